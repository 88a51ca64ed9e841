// Connects the engine of one surface to its MIDI ports and to a listener for what Pro Tools shows on that surface.
#pragma once

#include "base/strip.h"
#include "surface/hui_engine.h"
#include "surface/midi_host.h"

#include <memory>
#include <string>
#include <string_view>

namespace lumbrine {

// Gets what Pro Tools shows on a surface. Strips are numbered across both surfaces. All functions are called on the
// MIDI receive thread, except surfaceLog, which may be called on any thread.
class SurfaceListener {
public:
    virtual ~SurfaceListener() = default;

    virtual void surfaceLog(const std::string& line) = 0;
    virtual void faderFeedback(Strip strip, double value) = 0;           // see HUIEngine::onFaderFeedback
    virtual void trackNameShown(Strip strip, std::string_view text) = 0; // four characters, untrimmed
    virtual void meterShown(Strip strip, int side, int level) = 0;       // side 0 left, 1 right; level 0-15
    virtual void vpotShown(Strip strip, int value, bool centre, bool rightSide) = 0;
    virtual void ledShown(SurfaceID surface, int zone, int port, bool on) = 0;
    virtual void autoLedShown(Strip strip, AutoLedColour colour) = 0; // beside ledShown

    // The engine's count, this ping included, and the time at which it arrived.
    virtual void pingReceived(SurfaceID surface, int pingCount, TimePoint at) = 0;
};

// Sets the callbacks of engine and host. The engine keeps the host alive. Engine and listener are held weakly: when
// either is gone, incoming bytes are dropped and pings stay unanswered, so Pro Tools sees the surface go offline. Log
// lines of surface B get the prefix "[9-16] "; lines that begin with "← other" are dropped.
void wireSurface(SurfaceID surface, const std::shared_ptr<HUIEngine>& engine, const std::shared_ptr<MIDIHost>& host,
                 std::weak_ptr<SurfaceListener> listener);

} // namespace lumbrine
