#include "base/fader_value.h"
#include "base/strip.h"
#include "surface/hui_engine.h"
#include "surface/hui_switches.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdio>
#include <utility>

namespace lumbrine {

namespace {

// How long a key stays down.
constexpr Duration pressDuration = seconds(0.06);
constexpr Duration bankPressDuration = seconds(0.03);
constexpr int bankPorts = 4;
constexpr int maxVpotClicks = 63;
constexpr std::size_t longestPacket = 256; // one more packet may follow the limit and bring the end of the message

// Controllers from the surface to the host.
constexpr std::uint8_t zoneSelect = 0x0F;
constexpr std::uint8_t portState = 0x2F;
constexpr std::uint8_t faderLow = 0x20; // first controller of the low halves; the high halves start at 0
constexpr std::uint8_t vpot = 0x40;
constexpr int switchOn = 0x40;

constexpr std::array<std::uint8_t, 3> controlChange(int controller, int value) {
    return {0xB0, static_cast<std::uint8_t>(controller), static_cast<std::uint8_t>(value)};
}

constexpr int portByte(int port, bool on) {
    return (port & 0x0F) | (on ? switchOn : 0);
}

} // namespace

HUIEngine::HUIEngine(Runtime& runtime, Bilingual text)
    : send([](ByteView) {}), log([](const std::string& line) { std::puts(line.c_str()); }), runtime(runtime),
      text(text), txLock(runtime, Nesting::overBackEnd), panLock(runtime) {
    sysexBuf.reserve(sysexLimit + longestPacket);
}

void HUIEngine::sendPair(std::array<std::uint8_t, 3> first, std::array<std::uint8_t, 3> second) {
    // A zone select of another thread between the two would send this port to the wrong zone.
    send(first);
    send(second);
}

void HUIEngine::sendFader(int strip, double value) {
    if (!onThisSurface(strip)) return;
    const Lock lock(txLock);
    sendFaderPair(strip, value);
}

void HUIEngine::sendFaderPair(int strip, double value) {
    assert(!std::isnan(value));
    const FaderValue fader = FaderValue::ofUnit(value);
    sendPair(controlChange(strip, fader.high()), controlChange(faderLow + strip, fader.low()));
}

// ---- Switches and touches

std::size_t HUIEngine::switchAt(int zone, int port) {
    return static_cast<std::size_t>(zone & 0xFF) * portsOfZone + static_cast<std::size_t>(port & 0x0F);
}

void HUIEngine::sendEdge(int zone, int port, bool on) {
    if (ended) return;
    down.set(switchAt(zone, port), on);
    if (on) usedSinceReturn.set(switchAt(zone, port));
    sendPair(controlChange(zoneSelect, zone), controlChange(portState, portByte(port, on)));
}

void HUIEngine::touch(int strip) {
    if (onThisSurface(strip)) switchEdge(strip, hui::touchPort, true);
}

void HUIEngine::release(int strip) {
    if (onThisSurface(strip)) switchEdge(strip, hui::touchPort, false);
}

void HUIEngine::switchEdge(int zone, int port, bool on) {
    const Lock lock(txLock);
    sendEdge(zone & 0x7F, port, on);
}

std::uint64_t HUIEngine::press(int zone, int port) {
    sendEdge(zone, port, true);
    return isHandSwitch(zone, port) ? timesHandsLetGo : timesLetGo;
}

void HUIEngine::endPress(int zone, int port, std::uint64_t number) {
    const Lock lock(txLock);
    const std::uint64_t now = isHandSwitch(zone, port) ? timesHandsLetGo : timesLetGo;
    if (number == now) sendEdge(zone, port, false);
}

void HUIEngine::pressSwitch(int zone, int port) {
    assert(zone >= 0 && zone <= 0xFF);
    std::uint64_t number = 0;
    {
        const Lock lock(txLock);
        number = press(zone, port);
    }
    endPressLater(zone, port, number);
}

void HUIEngine::endPressLater(int zone, int port, std::uint64_t number) {
    log("→ switch zone" + std::to_string(zone) + " port" + std::to_string(port) + text(" pressed", " 押下"));
    runtime.backgroundAfter(pressDuration, [weak = weak_from_this(), zone, port, number] {
        if (const auto engine = weak.lock()) engine->endPress(zone, port, number);
    });
}

void HUIEngine::pressAndWait(int zone, int port, Duration duration) {
    std::uint64_t number = 0;
    {
        const Lock lock(txLock);
        number = press(zone, port);
    }
    runtime.sleepFor(duration);
    endPress(zone, port, number);
}

void HUIEngine::channelMove(int port) {
    if (port >= 0 && port < bankPorts) pressAndWait(hui::bankZone, port, bankPressDuration);
}

// Each press of PAN switches between the left and the right side, and the host does not report which one is shown.
// After another assignment, the first press of PAN always shows the left side.
void HUIEngine::resetPanAssignToLeft() {
    {
        const Lock lock(panLock);
        panRightSide = false; // Pro Tools may show it before the key is up
    }
    pressAndWait(hui::assignZone, hui::sendAAssignPort, pressDuration);
    runtime.sleepFor(pressDuration);
    pressAndWait(hui::assignZone, hui::panAssignPort, pressDuration);
    log(text("→ pan mode force-reset to Pan Left (SEND A→PAN)", "→ パンモードを Pan Left へ強制リセット(SEND A→PAN)"));
}

bool HUIEngine::isDown(int zone, int port) {
    const Lock lock(txLock);
    return down.test(switchAt(zone, port));
}

void HUIEngine::letGo() {
    const Lock lock(txLock);
    releaseAll(down);
}

void HUIEngine::letGoForGood() {
    const Lock lock(txLock);
    releaseAll(down);
    ended = true;
}

void HUIEngine::releaseAllAgain() {
    const Lock lock(txLock);
    releaseAll(usedSinceReturn);
    usedSinceReturn.reset();
}

void HUIEngine::releaseAll(Switches switches) {
    ++timesLetGo;
    ++timesHandsLetGo;
    for (int zone = 0; zone <= 0xFF; ++zone)
        for (int port = 0; port < portsOfZone; ++port)
            if (switches.test(switchAt(zone, port))) sendEdge(zone, port, false);
}

// ---- V-Pots

void HUIEngine::sendVpotDelta(int strip, int delta) {
    if (!onThisSurface(strip)) return;
    const Lock lock(txLock); // keeps this message out of the pairs of other threads
    sendTurn(strip, delta);
}

void HUIEngine::sendTurn(int strip, int delta) {
    if (delta == 0) return;
    const int clicks = std::clamp(delta, -maxVpotClicks, maxVpotClicks);
    send(controlChange(vpot + strip, clicks > 0 ? 0x40 + clicks : -clicks)); // bit 6: clockwise
}

// ---- Pan side

bool HUIEngine::showsRightPan() {
    const Lock lock(panLock);
    return panRightSide;
}

void HUIEngine::flipPanSide() {
    const Lock lock(panLock);
    panRightSide = !panRightSide;
}

} // namespace lumbrine
