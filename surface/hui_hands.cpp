// The client's hands on a surface that may be closed to them.
#include "surface/hui_engine.h"
#include "surface/hui_switches.h"

namespace lumbrine {

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
    fingers.set(fader);
    strayFingers.set(fader, closed);
    if (closed) return false;
    sendEdge(strip, hui::touchPort, true);
    return true;
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
    const Lock lock(txLock);
    if (closed || strayFingers.test(static_cast<std::size_t>(strip))) return false;
    sendFaderPair(strip, value);
    return true;
}

bool HUIEngine::pressByHand(int zone, int port) {
    std::uint64_t number = 0;
    {
        const Lock lock(txLock);
        if (closed) return false;
        number = press(zone, port);
    }
    endPressLater(zone, port, number);
    return true;
}

bool HUIEngine::turnByHand(int strip, int delta) {
    if (!onThisSurface(strip)) return true;
    const Lock lock(txLock);
    if (closed) return false;
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
    for (int strip = 0; strip < stripsPerSurface; ++strip) {
        const auto fader = static_cast<std::size_t>(strip);
        const bool byHand = fingers.test(fader) && !strayFingers.test(fader);
        if (byHand && down.test(switchAt(strip, hui::touchPort))) sendEdge(strip, hui::touchPort, false);
    }
}

} // namespace lumbrine
