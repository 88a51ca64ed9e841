// For tests of many seeks: surfaces, map and a simulated Pro Tools with numbered tracks, but no heartbeat. The receiver
// has not been started, so that hours of seeking take seconds.
#pragma once

#include "tests/bank_map/studio.h"

#include <memory>

namespace lumbrine {

class SeekBench {
public:
    SeekBench(int tracks, SimulatorOptions options);

    void seek(int target) { parts.seekWorker.seekBank(target); }

    // Until the seek is over; false when that takes more than 10 s.
    bool ends();

    // Seeks and waits; false when the surfaces are not there in the end, or the receiver does not know it.
    bool reaches(int target);

    int hostOffset() const { return proTools->snapshot().offset; }
    int knownOffset() { return parts.state.published.bankOffset; }

    ModelWorld world;
    ModelBench bench{world};
    ReceiverParts& parts = bench.parts();
    std::unique_ptr<SimulatedProTools> proTools;
};

} // namespace lumbrine
