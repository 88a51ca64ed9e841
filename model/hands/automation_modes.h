// Reading and setting automation modes. HUI has no message for them: while a strip's AUTO switch is held, Pro Tools
// writes the mode on the strip's display, and a mode button that is pressed meanwhile sets it.
//
// Every probe runs on one serial queue, because only one strip can be asked at a time.
#pragma once

#include "base/bilingual.h"
#include "model/hands/probe_exchange.h"
#include "model/hands/surfaces.h"
#include "model/mirror/client_mirror.h"
#include "model/state/activity_log.h"

#include <functional>

namespace lumbrine {

class AutomationModes {
public:
    AutomationModes(const Jobs& modelJobs, ReceiverState& receiverState, Surfaces& hostSurfaces, ClientMirror& client,
                    ProbeExchange& probeExchange, ActivityLog& activityLog, Bilingual bilingual);

    // Holds the strip's AUTO switch for 0.15 s, or with an action for 0.05 s, the action and 0.15 s; returns the mode
    // that the display showed, or unknown. Blocks; on the automation queue only.
    std::uint8_t autoProbe(Strip strip, const std::function<void()>& whileHeld = {});

    // Presses a mode's button (0-5, surface/hui_engine.h) within a probe of the strip; returns the mode that was shown
    // then, or unknown. Blocks; on the automation queue only.
    std::uint8_t pressMode(Strip strip, int modePort);

    // Queues a probe, which is not made when by then something else needs the surfaces: banks being moved, the
    // transport running, the client's finger on that strip's fader. Any thread.
    void pollAutoMode(Strip strip);

    // Queues a probe of every shown strip, unless that was done within the last 3.0 s. Main thread.
    void pollAllAutoModes();

    // A mode was read; unknown is not stored. Any thread.
    void autoModeUpdate(Strip strip, std::uint8_t code);

    // Queues the setting of a mode by its button (0-5, surface/hui_engine.h); reads back and logs what came of it. Any
    // thread.
    void setAutoMode(Strip strip, int modePort);

    // The queue that probes run on, for jobs that must not run beside one.
    SerialQueue& queue() { return *autoQueue; }

private:
    bool mayProbe(Strip strip) const;
    void logMode(Strip strip);

    const Jobs& jobs;
    ReceiverState& state;
    Surfaces& surfaces;
    ClientMirror& mirror;
    ProbeExchange& exchange;
    ActivityLog& log;
    const Bilingual text;
    std::unique_ptr<SerialQueue> autoQueue;
};

} // namespace lumbrine
