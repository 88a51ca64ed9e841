#include "tests/simulated_scripting/scripting_bench.h"

namespace lumbrine {
namespace {

TEST_F(ScriptingTest, TriesAgainAfterOneResetAndSaysSoAfterTwo) {
    start({.registrationOutlivesConnection = true});
    ASSERT_EQ(list(), "done");
    faults().next(WireFault::reset, 1);
    EXPECT_EQ(list(), "done");
    faults().next(WireFault::reset, 2);
    EXPECT_EQ(list(), "PTSL transport error: stream was reset");
    EXPECT_EQ(list(), "done");
}

TEST_F(ScriptingTest, TriesAgainAfterOneGoAwayAndSaysSoAfterTwo) {
    start();
    ASSERT_EQ(list(), "done");
    faults().next(WireFault::goAway, 1);
    EXPECT_EQ(list(), "done");
    faults().next(WireFault::goAway, 2);
    EXPECT_EQ(list(), "PTSL transport error: server sent GOAWAY");
    EXPECT_EQ(list(), "done");
}

TEST_F(ScriptingTest, IsWellAfterAGoAwayBetweenCalls) {
    start();
    ASSERT_EQ(list(), "done");
    service->goAway();
    EXPECT_EQ(list(), "done");
}

TEST_F(ScriptingTest, FindsTheServiceAgainWhenItHasDiedInACall) {
    start({.downTime = seconds(4)});
    ASSERT_EQ(list(), "done");
    faults().next(WireFault::die, 1);
    EXPECT_EQ(list(), "Cannot reach Pro Tools' PTSL (not running or disabled)");
    runtime.runFor(seconds(4));
    EXPECT_EQ(list(), "done");
    EXPECT_EQ(tracks.size(), 24u);
}

TEST_F(ScriptingTest, FindsTheServiceAgainWhenItHasDiedBetweenCalls) {
    start({.downTime = seconds(1)});
    ASSERT_EQ(list(), "done");
    service->die();
    EXPECT_EQ(list(), "Cannot reach Pro Tools' PTSL (not running or disabled)");
    runtime.runFor(seconds(1));
    EXPECT_EQ(list(), "done");
}

TEST_F(ScriptingTest, LosesASetterThatComesByANewConnectionOnceOnly) {
    start();
    ASSERT_EQ(list(), "done");
    service->goAway();
    EXPECT_THAT(mute("Kick In", true), testing::HasSubstr("GOAWAY"));
    EXPECT_THAT(mute("Kick In", true), testing::HasSubstr("is not known"));
    EXPECT_EQ(mute("Kick In", true), "done");
    EXPECT_TRUE(proTools->session().findByName("Kick In")->mute);
}

TEST_F(ScriptingTest, ReadsAnswersThatComeByteByByte) {
    for (const std::size_t size : {1UL, 2UL, 9UL, 1000UL}) {
        start({.bytesAtOnce = size}, 100);
        EXPECT_EQ(list(), "done");
        EXPECT_EQ(tracks.size(), 100u);
    }
}

TEST_F(ScriptingTest, IsWellOnceAllFaultsAreOver) {
    start({.busyOneIn = 9, .stallOneIn = 9, .resetOneIn = 7, .goAwayOneIn = 7, .dieOneIn = 20, .bytesAtOnce = 50});
    int done = 0;
    for (int i = 0; i < 200; ++i) {
        done += list() == "done" ? 1 : 0;
        runtime.runFor(seconds(1));
    }
    EXPECT_GT(done, 20);
    EXPECT_LT(done, 200);
    proTools->rest();
    runtime.runFor(seconds(10));
    EXPECT_EQ(list(), "done");
    EXPECT_EQ(tracks.size(), 24u);
    EXPECT_LE(streams.openCount(), 1u);
}

} // namespace
} // namespace lumbrine
