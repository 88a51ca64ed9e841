#include "platform/recorded/recording_clock.h"
#include "platform/recorded/testing/recording_bench.h"

namespace lumbrine {
namespace {

using blackbox::AnchorCause;
using blackbox::AnchorHead;
using blackbox::Kind;

struct RecordingClockTest : testing::Test {
    RecordingBench bench;
    std::int64_t wall = 1'700'000'000'000'000'000;
    RecordingClock clock{bench.recorder, [this] { return wall; }, 4711, "lumbrine 1.0, Linux"};
};

TEST_F(RecordingClockTest, SaysWhatTheWallClockShowsAndWhoWrites) {
    clock.programBegan();
    wall += 5;
    clock.programEnded();
    const auto entries = bench.entries();
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].kind, Kind::anchor);
    EXPECT_EQ(entries[0].channel, static_cast<int>(AnchorCause::programBegan));
    EXPECT_EQ(entries[0].head<AnchorHead>().wallTime, 1'700'000'000'000'000'000);
    EXPECT_EQ(entries[0].head<AnchorHead>().process, 4711U);
    EXPECT_EQ(entries[0].textBehind<AnchorHead>(), "lumbrine 1.0, Linux");
    EXPECT_EQ(entries[1].channel, static_cast<int>(AnchorCause::programEnded));
    EXPECT_EQ(entries[1].head<AnchorHead>().wallTime, wall);
}

TEST_F(RecordingClockTest, IsSilentWhileNothingIsRecorded) {
    clock.programBegan();
    clock.tick();
    EXPECT_EQ(bench.entries().size(), 1U);
    bench.recorder.note(Kind::log, 0, {});
    clock.tick();
    clock.tick();
    EXPECT_EQ(bench.entries().size(), 3U);
    EXPECT_EQ(bench.entries().back().channel, static_cast<int>(AnchorCause::periodic));
}

TEST_F(RecordingClockTest, SeesThatTheWallClockGoesBack) {
    const auto pass = [this](double real, double shown) {
        bench.runtime.time += seconds(real);
        wall += seconds(shown).count();
        clock.tick();
        return clock.wentBack();
    };
    EXPECT_FALSE(pass(10, 10));
    EXPECT_FALSE(pass(10, 9.5)) << "as the network's time corrects it";
    EXPECT_FALSE(pass(10, 3600)) << "the computer slept";
    EXPECT_TRUE(pass(10, -60));
    EXPECT_TRUE(pass(10, 10));
}

} // namespace
} // namespace lumbrine
