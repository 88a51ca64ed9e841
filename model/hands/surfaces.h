// The two emulated HUI surfaces: A ("Lumbrine", strips 0-7) and B ("Lumbrine B", strips 8-15), each an engine on a
// pair of virtual MIDI ports.
//
// Faders, touches, V-Pots and the switches of strips go out from here on any thread. The keys that change what the
// surfaces show (bank, channel, AUTO, mode, PAN) are pressed by SurfaceDesk alone.
#pragma once

#include "base/strip.h"
#include "client_link/ownership.h"
#include "model/state/activity_log.h"
#include "surface/surface_wiring.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace lumbrine {

class Surfaces {
public:
    Surfaces(Runtime& runtime, PublishedState& published, MIDIServices& services, ActivityLog& log);

    // Who hears what Pro Tools shows. Call once, before startSurfaces.
    void wire(const std::weak_ptr<SurfaceListener>& listener);

    // Creates the ports of A, then those of B, and announces both; logs the result, and keeps the ports' health up to
    // date. Main thread, once.
    void startSurfaces();

    // The system's MIDI service is lost, or there again (MIDIServices::onService). Creates the ports that are missing.
    // Main thread.
    void serviceChanged(bool isThere);

    // Publishes whether another program is connected to the ports. Main thread.
    void watchConnections();

    // Logs how many messages could not be sent, once for each run of them: when none has been added since the last
    // call. Main thread.
    void reportDropped();

    // The rest: any thread.

    HUIEngine& engine(SurfaceID surface) { return surface == SurfaceID::A ? *hui : *huiB; }
    HUIEngine& engineOf(Strip strip) { return engine(strip.surface()); }

    // Presses, as the client's hand, the switch at that port of the strip (surface/hui_engine.h). False while the
    // surfaces are closed to hands. A strip outside 0-15 does nothing.
    bool hwMute(int strip, int port);

    // What the client was shown of a strip (surface/hui_engine.h).
    bool showLabel(Strip strip, std::string_view text, bool isName);
    void tellLabel(Strip strip, std::string_view text, bool isName, Ownership owner);
    std::optional<std::uint64_t> knownLabel(Strip strip);
    void newOwner(Ownership owner);

    // The client's hands on both surfaces (surface/hui_engine.h).
    void closeToHands();
    void openToHands();
    void hideStrips(SurfaceID surface) { engine(surface).hideStrips(); }
    void showStrips(SurfaceID surface) { engine(surface).showStrips(); }
    void letHandsGo();
    void loseTouch();

    // Releases everything that is down; afterwards nothing goes down any more. For the end of the program.
    void letGo();

    // Announces a surface to Pro Tools again.
    void announce(SurfaceID surface);

private:
    void reportRefusedID(const std::string& name, const MIDIError& error);

    void note(LinkHealth::State state, const std::string& detail = {});

    PublishedState& published;
    ActivityLog& log;
    bool created = false; // both surfaces' ports
    std::string failure;  // as logged last
    std::uint64_t droppedBefore = 0;
    std::uint64_t droppedLogged = 0;
    std::shared_ptr<MIDIHost> midi;
    std::shared_ptr<MIDIHost> midiB;
    std::shared_ptr<HUIEngine> hui;
    std::shared_ptr<HUIEngine> huiB;
};

} // namespace lumbrine
