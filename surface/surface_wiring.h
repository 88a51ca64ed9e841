// Connects one surface's engine to its MIDI ports and to whoever listens to what Pro Tools shows there.
#pragma once

#include "base/strip.h"
#include "surface/hui_engine.h"
#include "surface/midi_host.h"

#include <memory>
#include <string>
#include <string_view>

namespace lumbrine {

// What Pro Tools shows on a surface, in strips across both surfaces. Every call comes on the MIDI receive thread, but
// for surfaceLog, which comes from any thread.
class SurfaceListener {
public:
    virtual ~SurfaceListener() = default;

    virtual void surfaceLog(const std::string& line) = 0;
    virtual void faderFeedback(Strip strip, double value) = 0;           // 0.0-1.0, or more (HUIEngine)
    virtual void trackNameShown(Strip strip, std::string_view text) = 0; // four characters, untrimmed
    virtual void meterShown(Strip strip, int side, int level) = 0;       // side 0 left, 1 right; level 0-15
    virtual void vpotShown(Strip strip, int value, bool centre, bool rightSide) = 0;
    virtual void ledShown(SurfaceID surface, int zone, int port, bool on) = 0;
    virtual void pingReceived(SurfaceID surface, int pingCount) = 0; // the engine's count, this one included
};

// Installs the engine's and the host's callbacks. The engine keeps the host alive; engine and listener are held weakly:
// once one of them is gone, what arrives is dropped and no ping is answered. Log lines of surface B get the prefix
// "[9-16] "; lines that begin with "← other" are dropped.
void wireSurface(SurfaceID surface, const std::shared_ptr<HUIEngine>& engine, const std::shared_ptr<MIDIHost>& host,
                 std::weak_ptr<SurfaceListener> listener);

} // namespace lumbrine
