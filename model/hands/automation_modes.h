// Reading and setting automation modes. HUI has no message for them: while a strip's AUTO key is held, Pro Tools writes
// the mode on the strip's display, and a mode button that is pressed meanwhile sets it.
//
// Every probe runs on one serial queue, because only one strip can be asked at a time.
#pragma once

#include "model/hands/display_watch.h"
#include "model/hands/surface_desk.h"
#include "model/mirror/client_mirror.h"

#include <functional>
#include <memory>

namespace lumbrine {

class AutomationModes {
public:
    AutomationModes(const Jobs& jobs, ReceiverState& state, ActivityLog& log, SurfaceDesk& desk, DisplayWatch& displays,
                    ClientMirror& mirror);

    // Probes the strip; returns the mode that its display showed, or unknown. Blocks; on the automation queue only.
    std::uint8_t autoProbe(Strip strip, const std::function<void()>& whileHeld = {});

    // Presses a mode's button (0-5, surface/hui_engine.h) within a probe of the strip; returns the mode that was shown
    // then, or unknown. Blocks; on the automation queue only.
    std::uint8_t pressMode(Strip strip, int modePort);

    // Queues a probe. It is not made if something else needs the surfaces by then: a job that moves the banks, the
    // running transport, the client's finger on that strip's fader. Any thread.
    void pollAutoMode(Strip strip);

    // Queues a probe of every shown strip, unless that was done within the last 3.0 s. Main thread.
    void pollAllAutoModes();

    // Stores a mode that was read; unknown is not stored. Any thread.
    void autoModeUpdate(Strip strip, std::uint8_t code);

    // Queues the setting of a mode by its button (0-5, surface/hui_engine.h); logs the mode that Pro Tools then shows.
    // Any thread.
    void setAutoMode(Strip strip, int modePort);

    // The queue that probes run on, for jobs that must not run beside one.
    SerialQueue& queue() { return *autoQueue; }

private:
    bool mayProbe(Strip strip) const;
    void logMode(Strip strip);

    const Jobs& jobs;
    ReceiverState& state;
    ActivityLog& log;
    SurfaceDesk& desk;
    DisplayWatch& displays;
    ClientMirror& mirror;
    std::unique_ptr<SerialQueue> autoQueue;
};

} // namespace lumbrine
