// The client's hands: what they may do, and when they are let go.
#include "surface/hui_engine.h"
#include "surface/hui_switches.h"

namespace lumbrine {

// ---- What the client was shown

bool HUIEngine::showLabel(int strip, std::string_view shown, bool isName) {
    if (!onThisSurface(strip)) return false;
    const auto fader = static_cast<std::size_t>(strip);
    const Lock lock(txLock);
    if (!labels[fader].show(shown, isName)) return false;
    liftFinger(strip);
    if (fingers.test(fader)) strayFingers.set(fader);
    return true;
}

void HUIEngine::tellLabel(int strip, std::string_view told, bool isName, std::uint64_t owner) {
    if (onThisSurface(strip)) labels[static_cast<std::size_t>(strip)].tell(told, isName, owner);
}

std::optional<std::uint64_t> HUIEngine::knownLabel(int strip) {
    if (!onThisSurface(strip)) return std::nullopt;
    const Lock lock(txLock);
    const StripLabel& label = labels[static_cast<std::size_t>(strip)];
    return !hidden && label.isNameKnownTo(handsOwner) ? std::optional(label.number()) : std::nullopt;
}

void HUIEngine::newOwner(HandsOwner owner) {
    const Lock lock(txLock);
    liftFingers();
    fingers.reset();
    strayFingers.reset();
    handsOwner = owner;
}

bool HUIEngine::isOpen(int strip) const {
    return !closed && labels[static_cast<std::size_t>(strip)].isKnownTo(handsOwner);
}

// ---- Acts

bool HUIEngine::touchByHand(int strip) {
    if (!onThisSurface(strip)) return true;
    const Lock lock(txLock);
    return putFinger(strip);
}

bool HUIEngine::holdByHand(int strip) {
    if (!onThisSurface(strip)) return true;
    const Lock lock(txLock);
    return !strayFingers.test(static_cast<std::size_t>(strip)) && putFinger(strip);
}

bool HUIEngine::putFinger(int strip) {
    const auto fader = static_cast<std::size_t>(strip);
    const bool open = isOpen(strip);
    fingers.set(fader);
    strayFingers.set(fader, !open);
    if (open) sendEdge(strip, hui::touchPort, true);
    return open;
}

bool HUIEngine::releaseByHand(int strip) {
    if (!onThisSurface(strip)) return true;
    const auto fader = static_cast<std::size_t>(strip);
    const Lock lock(txLock);
    const bool stray = strayFingers.test(fader);
    fingers.reset(fader);
    strayFingers.reset(fader);
    if (closed || stray) return false;
    sendEdge(strip, hui::touchPort, false);
    return true;
}

bool HUIEngine::moveByHand(int strip, double value) {
    if (!onThisSurface(strip)) return true;
    const auto fader = static_cast<std::size_t>(strip);
    const Lock lock(txLock);
    if (closed || strayFingers.test(fader) || (!fingers.test(fader) && !isOpen(strip))) return false;
    sendFaderPair(strip, value);
    return true;
}

bool HUIEngine::pressByHand(int zone, int port) {
    std::uint64_t number = 0;
    {
        const Lock lock(txLock);
        if (closed || (onThisSurface(zone) && (hidden || !isOpen(zone)))) return false;
        number = press(zone, port);
    }
    endPressLater(zone, port, number);
    return true;
}

bool HUIEngine::turnByHand(int strip, int delta) {
    if (!onThisSurface(strip)) return true;
    const Lock lock(txLock);
    if (hidden || !isOpen(strip)) return false;
    sendTurn(strip, delta);
    return true;
}

void HUIEngine::closeToHands() {
    const Lock lock(txLock);
    closed = true;
    strayFingers |= fingers;
    ++timesHandsLetGo;
    for (int zone = 0; zone < stripsPerSurface; ++zone)
        for (int port = 0; port < portsOfZone; ++port)
            if (isHandSwitch(zone, port) && down.test(switchAt(zone, port))) sendEdge(zone, port, false);
}

void HUIEngine::openToHands() {
    const Lock lock(txLock);
    closed = false;
}

void HUIEngine::hideStrips() {
    const Lock lock(txLock);
    hidden = true;
}

void HUIEngine::showStrips() {
    const Lock lock(txLock);
    hidden = false;
}

void HUIEngine::letHandsGo() {
    const Lock lock(txLock);
    liftFingers();
    fingers.reset();
    strayFingers.reset();
}

void HUIEngine::loseTouch() {
    const Lock lock(txLock);
    liftFingers();
}

void HUIEngine::liftFingers() {
    for (int strip = 0; strip < stripsPerSurface; ++strip)
        liftFinger(strip);
}

void HUIEngine::liftFinger(int strip) {
    const auto fader = static_cast<std::size_t>(strip);
    const bool byHand = fingers.test(fader) && !strayFingers.test(fader);
    if (byHand && down.test(switchAt(strip, hui::touchPort))) sendEdge(strip, hui::touchPort, false);
}

} // namespace lumbrine
