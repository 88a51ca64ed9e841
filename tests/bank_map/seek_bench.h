// For tests of many seeks: surfaces, map and a simulated Pro Tools with numbered tracks, but no heartbeat. The receiver
// has not been started, so that hours of seeking take seconds.
#pragma once

#include "tests/bank_map/studio.h"

#include <memory>

namespace lumbrine {

class SeekBench {
public:
    // The host sends as few messages as it can, again for speed.
    SeekBench(int tracks, SimulatorOptions options);

    void seek(int target) { parts.seekWorker.seekBank(target); }

    // Until the seek is over; false when that takes more than 10 s.
    bool ends();

    // Seeks and waits; false when the surfaces are not there in the end, or the receiver does not know it.
    bool reaches(int target);

    // The bank presses on surface A since the last look.
    std::vector<Press> presses() { return bankPresses(bench.surfaceA); }

    int hostOffset() const { return proTools->snapshot().offset; }
    int knownOffset() { return parts.state.published.bankOffset; }

    ModelWorld world{.runtime = NotingRuntime(patientThreads)};
    ModelBench bench{world};
    ReceiverParts& parts = bench.parts();
    std::unique_ptr<SimulatedProTools> proTools;
};

} // namespace lumbrine
