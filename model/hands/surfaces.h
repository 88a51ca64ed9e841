// The two emulated HUI surfaces: A ("Lumbrine", strips 0-7) and B ("Lumbrine B", strips 8-15), each an engine on a
// pair of virtual MIDI ports.
#pragma once

#include "base/bilingual.h"
#include "base/strip.h"
#include "model/state/activity_log.h"
#include "surface/surface_wiring.h"

#include <memory>

namespace lumbrine {

class Surfaces {
public:
    Surfaces(Runtime& runtime, MIDIServices& services, Bilingual bilingual, ActivityLog& activityLog);

    // Who hears what Pro Tools shows. Once, before startSurfaces.
    void wire(const std::weak_ptr<SurfaceListener>& listener);

    // Creates the ports of A, then those of B, and announces both; logs how it went. Main thread, once.
    void startSurfaces();

    // The rest: any thread.

    HUIEngine& engine(SurfaceID surface) { return surface == SurfaceID::A ? *hui : *huiB; }
    HUIEngine& engineOf(Strip strip) { return engine(strip.surface()); }

    // Presses the switch at that port of the strip (surface/hui_engine.h); any strip number, those outside 0-15 do
    // nothing.
    void hwMute(int strip, int port);

    // Has Pro Tools show the other side of stereo pans, on both surfaces.
    void hwPanAssignToggle();

    // Says again on the wire that surface A is there.
    void announceSurfaceA();

private:
    const Bilingual text;
    ActivityLog& log;
    std::shared_ptr<MIDIHost> midi;
    std::shared_ptr<MIDIHost> midiB;
    std::shared_ptr<HUIEngine> hui;
    std::shared_ptr<HUIEngine> huiB;
};

} // namespace lumbrine
