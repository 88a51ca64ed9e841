#include "simulator/restless_user.h"
#include "simulator/testing/host_bench.h"

namespace lumbrine {
namespace {

TEST(RestlessUser, ActsAtIrregularTimesAboutAsOftenAsAskedFor) {
    HostBench bench(numberedSession(20));
    RestlessUser user(bench.session, bench.host, seconds(2), 7);
    TimePoint now{};
    user.advance(now);
    int acts = 0;
    for (; user.nextDeadline() <= TimePoint{seconds(1000)}; ++acts) {
        const Duration wait = user.nextDeadline() - now;
        EXPECT_GE(wait, seconds(1));
        EXPECT_LE(wait, seconds(3));
        now = user.nextDeadline();
        user.advance(now);
    }
    EXPECT_NEAR(acts, 500, 50);
}

TEST(RestlessUser, DoesEverythingAUserCanDo) {
    HostBench bench(numberedSession(20));
    RestlessUser user(bench.session, bench.host, seconds(1), 7);
    bool banked = false, renamed = false, added = false, removed = false, hid = false;
    bool played = false, recorded = false, stopped = false, automated = false;
    for (int second = 0; second < 200; ++second) {
        const bool wasPlaying = bench.session.transport().playing;
        user.advance(TimePoint{seconds(second)});
        played = played || bench.session.transport().playing;
        recorded = recorded || bench.session.transport().recording;
        stopped = stopped || (wasPlaying && !bench.session.transport().playing);
        banked = banked || bench.host.offset() > 0;
        removed = removed || bench.session.find(5) == nullptr;
        hid = hid || bench.session.shownTracks().size() < bench.session.tracks().size();
        for (const SimulatedTrack& track : bench.session.tracks()) {
            renamed = renamed || track.name.starts_with("Take ");
            added = added || track.name.starts_with("New ");
            automated = automated || track.automation != SimulatedTrack::Automation::read;
        }
    }
    EXPECT_TRUE(banked && renamed && added && removed && hid);
    EXPECT_TRUE(played && recorded && stopped && automated);
    std::vector<int> order;
    for (const SimulatedTrack& track : bench.session.tracks())
        order.push_back(track.id);
    EXPECT_FALSE(std::ranges::is_sorted(order)); // moved
}

TEST(RestlessUser, DoesNothingWithoutAnInterval) {
    HostBench bench(numberedSession(20));
    RestlessUser user(bench.session, bench.host, Duration::zero(), 7);
    user.advance(TimePoint{seconds(1000)});
    EXPECT_EQ(user.nextDeadline(), TimePoint::max());
    EXPECT_EQ(bench.session.tracks(), numberedSession(20).tracks());
}

TEST(RestlessUser, RestsWhenAskedTo) {
    HostBench bench(numberedSession(20));
    RestlessUser user(bench.session, bench.host, seconds(1), 7);
    user.advance(TimePoint{seconds(1)});
    user.rest();
    EXPECT_EQ(user.nextDeadline(), TimePoint::max());
    user.advance(TimePoint{seconds(1000)});
    EXPECT_EQ(bench.session.tracks(), numberedSession(20).tracks());
    EXPECT_EQ(bench.host.offset(), 0);
}

TEST(RestlessUser, LeavesAFewTracks) {
    HostBench bench(numberedSession(1));
    RestlessUser user(bench.session, bench.host, seconds(1), 3);
    for (int second = 0; second < 2000; ++second) {
        user.advance(TimePoint{seconds(second)});
        ASSERT_GE(bench.session.tracks().size(), 1u);
    }
}

} // namespace
} // namespace lumbrine
