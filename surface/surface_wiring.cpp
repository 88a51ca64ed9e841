#include "surface/surface_wiring.h"

#include <optional>
#include <utility>

namespace lumbrine {

namespace {

// Calls the listener with the strip's number across both surfaces. Does nothing when the listener is gone or the engine
// has no such strip.
template <typename Call>
void forStrip(const std::weak_ptr<SurfaceListener>& weak, SurfaceID surface, int engineStrip, const Call& call) {
    const auto strip = Strip::of(surface, engineStrip);
    if (!strip) return;
    if (const auto listener = weak.lock()) call(*listener, *strip);
}

void wireLog(SurfaceID surface, HUIEngine& engine, const std::weak_ptr<SurfaceListener>& weak) {
    engine.log = [surface, weak](const std::string& line) {
        if (line.starts_with("← other")) return;
        if (const auto listener = weak.lock()) listener->surfaceLog(surface == SurfaceID::B ? "[9-16] " + line : line);
    };
}

void wireCallbacks(SurfaceID surface, HUIEngine& engine, const std::weak_ptr<SurfaceListener>& weak) {
    engine.onFaderFeedback = [surface, weak](int engineStrip, double value) {
        forStrip(weak, surface, engineStrip,
                 [&](SurfaceListener& listener, Strip strip) { listener.faderFeedback(strip, value); });
    };
    engine.onTrackName = [surface, weak](int engineStrip, std::string_view text) {
        forStrip(weak, surface, engineStrip,
                 [&](SurfaceListener& listener, Strip strip) { listener.trackNameShown(strip, text); });
    };
    engine.onMeter = [surface, weak](int engineStrip, int side, int level) {
        if (side != 0 && side != 1) return;
        forStrip(weak, surface, engineStrip,
                 [&](SurfaceListener& listener, Strip strip) { listener.meterShown(strip, side, level); });
    };
    engine.onVpot = [surface, weak](int engineStrip, int value, bool centre, bool rightSide) {
        forStrip(weak, surface, engineStrip,
                 [&](SurfaceListener& listener, Strip strip) { listener.vpotShown(strip, value, centre, rightSide); });
    };
    engine.onAutoLed = [surface, weak](int engineStrip, AutoLedColour colour) {
        forStrip(weak, surface, engineStrip,
                 [&](SurfaceListener& listener, Strip strip) { listener.autoLedShown(strip, colour); });
    };
    engine.onLed = [surface, weak](int zone, int port, bool on) {
        if (const auto listener = weak.lock()) listener->ledShown(surface, zone, port, on);
    };
}

} // namespace

void wireSurface(SurfaceID surface, const std::shared_ptr<HUIEngine>& engine, const std::shared_ptr<MIDIHost>& host,
                 std::weak_ptr<SurfaceListener> listener) {
    // The engine owns its host; the host holds the engine weakly. Two owners would be a cycle.
    engine->send = [host](ByteView message) { host->send(message); };
    wireLog(surface, *engine, listener);
    wireCallbacks(surface, *engine, listener);
    host->onReturn = [weakEngine = std::weak_ptr(engine)] {
        if (const auto heldEngine = weakEngine.lock()) heldEngine->portsAreBack();
    };
    host->onIncoming = [surface, weakEngine = std::weak_ptr(engine), weak = std::move(listener)](ByteView packet) {
        const auto heldEngine = weakEngine.lock();
        const auto heldListener = weak.lock();
        if (!heldEngine || !heldListener) return;
        const int before = heldEngine->pingCount;
        heldEngine->handleIncoming(packet);
        if (const int count = heldEngine->pingCount; count != before)
            heldListener->pingReceived(surface, count, *heldEngine->lastPingAt);
    };
}

} // namespace lumbrine
