// Reading and setting automation modes. HUI has no message for them: while a strip's AUTO key is held, Pro Tools writes
// the mode on the strip's display, and a mode button that is pressed meanwhile sets it.
//
// Every probe is a job of DeskQueue or within one, because only one strip can be asked at a time.
#pragma once

#include "model/hands/auto_leds.h"
#include "model/hands/desk_queue.h"
#include "model/hands/display_watch.h"
#include "model/hands/surface_desk.h"
#include "model/mirror/client_mirror.h"

#include <bitset>
#include <functional>
#include <vector>

namespace lumbrine {

class AutomationModes {
public:
    struct Parts {
        Surfaces& surfaces;
        SurfaceDesk& desk;
        DeskQueue& queue;
        DisplayWatch& displays;
        ClientMirror& mirror;
        DroppedCommands& drops;
    };

    AutomationModes(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Parts parts);

    // Probes the strip; returns the mode that its display showed, or unknown. Ends early when `owner` has lost control.
    // Blocks; on the desk's thread only.
    std::uint8_t autoProbe(Strip strip, const std::optional<Ownership>& owner,
                           const std::function<void()>& whileHeld = {});

    // Presses a mode's button (0-5, surface/hui_engine.h) within a probe of the strip, if `isThere`, which is called on
    // the main thread, says that the strip still shows the track when Pro Tools waits for the button, and if the owner
    // is still in control. Returns the mode that was shown then, or unknown. Blocks; on the desk's thread only.
    std::uint8_t pressMode(Strip strip, int modePort, Ownership owner, const std::function<bool()>& isThere);

    // Asks for a probe. It is not made if the strip's LED tells the mode (auto_leds.h), or if something else needs the
    // surfaces by then: a job that moves the banks, the running transport, the client's hand on a fader. Any thread.
    void pollAutoMode(Strip strip);

    // Asks for a probe of every shown strip, unless that was done within the last 3.0 s. Main thread.
    void pollAllAutoModes();

    // The LED of the strip's AUTO key has this colour. A change that contradicts the known mode is followed by one
    // probe. Main thread.
    void ledShown(Strip strip, AutoLedColour colour);

    // Main thread.
    void surfaceGone(SurfaceID surface) { leds.forget(surface); }

    // Stores a mode that was read; unknown is not stored. Any thread.
    void autoModeUpdate(Strip strip, std::uint8_t code);

    // Asks for the setting of a mode by its button (0-5, surface/hui_engine.h), of the track that the strip shows now;
    // logs the mode that Pro Tools then shows. The newest wish for a strip counts. Any thread.
    void setAutoMode(Strip strip, int modePort, Asked asked);

private:
    bool mayProbe() const;
    bool isStillOn(const TrackOnStrip& track, Strip strip) const;
    std::uint8_t knownMode(Strip strip) const { return state.published.strip(strip).mode; }
    void checkLed(Strip strip);
    void requestPoll();
    void requestMode(const TrackOnStrip& track, int modePort, Asked asked);
    void logMode(Strip strip);

    const Jobs& jobs;
    ReceiverState& state;
    ActivityLog& log;
    const Parts parts;
    AutoLeds leds;
    std::bitset<stripCount> ledChecks; // to come
    std::vector<Strip> toPoll;         // in the order in which they were asked for; main thread
};

} // namespace lumbrine
