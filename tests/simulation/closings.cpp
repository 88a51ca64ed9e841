#include "tests/simulation/closings.h"

#include <algorithm>

namespace lumbrine::simulation {

Closings::Closings(const std::vector<JobRun>& jobRuns, const Pauses& ofThreads) : runs(jobRuns), pauses(ofThreads) {}

bool Closings::mayMeet(TimePoint came) const {
    const TimePoint latest = pauses.latest(came);
    return std::ranges::any_of(runs, [&](const JobRun& run) { return run.before <= latest && came <= run.after; });
}

bool Closings::surelyWas(TimePoint sent) const {
    const TimePoint decided = pauses.earliest(sent);
    return std::ranges::any_of(runs, [&](const JobRun& run) { return run.first < decided && sent < run.last; });
}

bool Closings::mayHaveBegun(TimePoint since, TimePoint came) const {
    const TimePoint latest = pauses.latest(came);
    return std::ranges::any_of(runs, [&](const JobRun& run) { return run.first >= since && run.before <= latest; });
}

bool Closings::mayBeginAt(TimePoint sent) const {
    const TimePoint decided = pauses.earliest(sent);
    return std::ranges::any_of(runs, [&](const JobRun& run) { return run.before <= sent && decided <= run.first; });
}

bool Closings::surelyBegan(TimePoint sent, TimePoint later) const {
    const TimePoint decided = pauses.earliest(later);
    return std::ranges::any_of(runs, [&](const JobRun& run) { return run.before > sent && run.first < decided; });
}

} // namespace lumbrine::simulation
