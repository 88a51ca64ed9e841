// How urgent the work is: what somebody waits for goes before what merely has to be done.
#include "model/testing/banking_host.h"
#include "model/testing/model_test.h"

#include <utility>

namespace lumbrine {
namespace {

class PrioritiesTest : public ModelTest {
protected:
    PrioritiesTest() {
        bench.parts().surfaces.startSurfaces();
        host.show();
        bench.setTrackMap(numbers(20), 0);
        state.published.huiConnected = true;
        bench.run(2s);
    }

    // The priorities of the jobs that the act begins by itself; then it comes to its end.
    template <typename Act>
    std::vector<Priority> begunBy(Act act) {
        world.runtime.jobs.clear();
        act();
        auto begun = std::exchange(world.runtime.jobs, {});
        bench.run(30s);
        return begun;
    }

    ReceiverParts& parts = bench.parts();
    ReceiverState& state = bench.state();
    BankingHost host{bench, numbers(20)};
};

TEST_F(PrioritiesTest, WhatSomebodyWaitsForIsUrgent) {
    EXPECT_THAT(begunBy([this] { parts.faderSweep.run(); }), ElementsAre(Priority::userInitiated));
    state.published.huiConnected = false;
    EXPECT_THAT(begunBy([this] { parts.reconnection.reconnectToPT(); }), testing::Contains(Priority::userInitiated));
}

TEST_F(PrioritiesTest, BringingTheSecondSurfaceToTheSideOfTheFirstIsNot) {
    state.presence.lastPing = state.presence.lastPingB = world.runtime.now();
    EXPECT_THAT(begunBy([this] { parts.presence.watchWindowWidth(); }), ElementsAre(Priority::normal));
}

TEST_F(PrioritiesTest, TheSurfacesGoBeforeTheScriptingService) {
    EXPECT_EQ(world.runtime.queues.at("com.tarnwick.lumbrine.automode"), Priority::userInitiated);
    EXPECT_EQ(world.runtime.queues.at("com.tarnwick.lumbrine.ptsl"), Priority::utility);
}

} // namespace
} // namespace lumbrine
