// What background threads need to know of the display texts, which come on the MIDI threads: when the last one came,
// and which automation mode it spelled on the strip that is being probed.
#pragma once

#include "base/strip.h"
#include "model/state/automation_mode.h"
#include "platform/api/runtime.h"

#include <optional>
#include <string_view>

namespace lumbrine {

class DisplayWatch {
public:
    explicit DisplayWatch(Runtime& runtime) : runtime(runtime), nameClock(runtime), autoProbeLock(runtime) {}

    // A text came. Any thread.
    void shown(Strip strip, std::string_view text);

    // How long no text has come: how the jobs that move the banks know that the surfaces have settled. Any thread.
    Duration age();

    // One probe at a time: all of them run on the automation queue.

    void beginProbe(Strip strip);

    // Returns the mode that was shown last since the probe began, or unknown.
    std::uint8_t endProbe();

private:
    Runtime& runtime;

    Mutex nameClock;
    TimePoint lastNameChange LUMBRINE_GUARDED_BY(nameClock) = distantPast;

    Mutex autoProbeLock;
    std::optional<Strip> autoProbeStrip LUMBRINE_GUARDED_BY(autoProbeLock);
    std::uint8_t autoProbeResult LUMBRINE_GUARDED_BY(autoProbeLock) = autoModeUnknown;
};

} // namespace lumbrine
