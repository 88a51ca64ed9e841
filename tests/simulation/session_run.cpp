#include "tests/simulation/session_run.h"

#include "tests/simulation/calm.h"
#include "tests/simulation/trouble.h"
#include "tests/simulation/world.h"

#include <algorithm>

namespace lumbrine::simulation {

namespace {

// What was told last by then counts as told then.
void forgetBefore(std::vector<ToldTracks>& told, TimePoint since) {
    const auto later = std::ranges::find_if(told, [since](const ToldTracks& moment) { return moment.at >= since; });
    if (later == told.begin()) return;
    const auto last = later - 1;
    last->at = std::max(last->at, since);
    told.erase(told.begin(), last);
}

} // namespace

Evidence runSession(const Scenario& scenario, Trace* trace) {
    World world(scenario, trace);
    Trouble trouble(world);
    trouble.run();
    Recovery recovery = Calm(world).run();
    Evidence evidence = world.collect();
    evidence.recovery = std::move(recovery);
    evidence.disturbances = trouble.disturbances();
    forgetBefore(evidence.told, trouble.tracksSince());
    return evidence;
}

} // namespace lumbrine::simulation
