// Where a probe for a strip's automation mode meets the display text that answers it: the probe waits on a worker
// thread, the text comes on the MIDI thread.
#pragma once

#include "base/strip.h"
#include "model/state/receiver_state.h"
#include "platform/api/runtime.h"

#include <optional>

namespace lumbrine {

// One probe at a time: all of them run on the automation queue.
class ProbeExchange {
public:
    explicit ProbeExchange(Runtime& rt) : autoProbeLock(rt) {}

    void begin(Strip strip) {
        const Lock lock(autoProbeLock);
        autoProbeStrip = strip;
        autoProbeResult = autoModeUnknown;
    }

    // Ends the probe; the mode that was shown last meanwhile, or unknown.
    std::uint8_t end() {
        const Lock lock(autoProbeLock);
        autoProbeStrip.reset();
        return autoProbeResult;
    }

    bool waitsOn(Strip strip) {
        const Lock lock(autoProbeLock);
        return autoProbeStrip == strip;
    }

    // A mode was read from the strip's display; only a probe that waits on this strip takes it.
    void answer(Strip strip, std::uint8_t mode) {
        const Lock lock(autoProbeLock);
        if (autoProbeStrip == strip) autoProbeResult = mode;
    }

private:
    Mutex autoProbeLock;
    std::optional<Strip> autoProbeStrip LUMBRINE_GUARDED_BY(autoProbeLock);
    std::uint8_t autoProbeResult LUMBRINE_GUARDED_BY(autoProbeLock) = autoModeUnknown;
};

} // namespace lumbrine
