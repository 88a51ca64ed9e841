// For tests of many seeks: surfaces, a map and a simulated Pro Tools with numbered tracks. The receiver is not started,
// so its timers do not run and hours of seeking take seconds.
#pragma once

#include "tests/studio/studio.h"

#include <memory>

namespace lumbrine {

class SeekBench {
public:
    // The host sends as few messages as possible, also for speed.
    SeekBench(int tracks, SimulatorOptions options);

    void seek(int target) { parts.seekWorker.seekBank(target); }

    // Waits until the seek is over. False when that takes more than 10 s.
    bool ends();

    // Seeks and waits. False when the surfaces are not at the target in the end, or the receiver does not know it.
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
