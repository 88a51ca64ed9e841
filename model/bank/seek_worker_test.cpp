// Seeking: the presses and their times, what the client is told meanwhile and in the end, and who wins.
#include "model/testing/banking_host.h"
#include "model/testing/model_test.h"

#include <algorithm>

namespace lumbrine {
namespace {

// Connected, 20 tracks, the first ones shown; no heartbeat.
class SeekTest : public ModelTest {
protected:
    SeekTest() {
        bench.parts().surfaces.startSurfaces();
        host.show();
        bench.setTrackMap(numbers(20), 0);
        state.published.huiConnected = true;
        state.lastAutoPollAll = world.runtime.now() + 1h; // no probes
        bench.learnThatTheHostIsQuick();
        bench.run(2s);
        bench.mark();
    }

    Lines presses() {
        Lines lines;
        for (const std::string& line : bench.heardOn(bench.surfaceA))
            if (line.find("B0 2F 4") != std::string::npos) lines.push_back(line);
        return lines;
    }

    bool ends(Duration limit = 20s) {
        return world.runtime.runUntil([this] { return state.published.banksUsedBy != BankUser::seek; }, limit);
    }

    SeekWorker& worker = bench.parts().seekWorker;
    ReceiverState& state = bench.state();
    BankingHost host{bench, numbers(20)};
};

// ---- Presses

TEST_F(SeekTest, PressesOneStepAfterTheOther) {
    worker.seekBank(12);
    EXPECT_TRUE(state.published.banksUsedBy == BankUser::seek);
    bench.run(497ms);
    EXPECT_TRUE(state.published.banksUsedBy == BankUser::seek);
    bench.run(1ms); // 60 ms in wait for another target, and a look at the displays
    EXPECT_FALSE(state.published.banksUsedBy == BankUser::seek);
    EXPECT_EQ(host.offset, 12);
    EXPECT_EQ(state.published.bankOffset, 12);
    EXPECT_THAT(presses(), ElementsAre("0ms B0 2F 43", // and a quiet wait
                                       "150ms B0 2F 42", "192ms B0 2F 42", "234ms B0 2F 42", "276ms B0 2F 42"));
}

TEST_F(SeekTest, KeepsTheTargetWithinTheSession) {
    worker.seekBank(100);
    ASSERT_TRUE(ends());
    EXPECT_EQ(host.offset, 12);
    worker.seekBank(-1);
    ASSERT_TRUE(ends());
    EXPECT_EQ(host.offset, 0);
}

TEST_F(SeekTest, PressesNothingWhereItIs) {
    worker.seekBank(0);
    bench.run(179ms);
    EXPECT_TRUE(state.published.banksUsedBy == BankUser::seek);
    bench.run(1ms);
    EXPECT_FALSE(state.published.banksUsedBy == BankUser::seek);
    EXPECT_THAT(presses(), IsEmpty());
}

TEST_F(SeekTest, FindsTheSurfacesWhenThePositionWasUnknown) {
    state.published.bankOffset = -1;
    worker.seekBank(8);
    ASSERT_TRUE(ends());
    EXPECT_THAT(presses(), ElementsAre("120ms B0 2F 43"));
    EXPECT_EQ(state.published.bankOffset, 8);
}

TEST_F(SeekTest, WaitsForAValueOverANameToGo) {
    state.published.bankOffset = -1;
    bench.surfaceA.name(0, "-3.5");
    bench.run(10ms);
    worker.seekBank(8);
    bench.run(900ms);
    host.show();
    ASSERT_TRUE(ends());
    EXPECT_EQ(host.offset, 8);
}

TEST_F(SeekTest, IsGivenUpWhenTheSurfacesCannotBeFound) {
    bench.surfaceA.name(0, "????");
    bench.run(1s);
    EXPECT_EQ(state.published.bankOffset, -1);
    worker.seekBank(8);
    bench.run(119ms);
    EXPECT_TRUE(state.published.banksUsedBy == BankUser::seek);
    bench.run(1ms);
    EXPECT_FALSE(state.published.banksUsedBy == BankUser::seek);
    EXPECT_THAT(presses(), IsEmpty());

    // The target is forgotten: nothing of it is left for the next one.
    host.show();
    bench.run(1s);
    bench.mark();
    worker.seekBank(1);
    ASSERT_TRUE(ends());
    EXPECT_THAT(presses(), ElementsAre("0ms B0 2F 42"));
}

// ---- Admission

TEST_F(SeekTest, IsIgnoredWithoutProToolsAndWhileOthersMoveTheBanks) {
    state.published.huiConnected = false;
    worker.seekBank(8);
    EXPECT_FALSE(state.published.banksUsedBy == BankUser::seek);
    EXPECT_EQ(bench.lines.back(), "✗ Dropped bank move: Pro Tools is not connected");
    state.published.huiConnected = true;
    for (const BankUser user : {BankUser::scan, BankUser::walk}) {
        state.published.banksUsedBy = user;
        worker.seekBank(8);
        EXPECT_EQ(state.published.banksUsedBy, user);
    }
    state.published.banksUsedBy.reset();
    bench.run(1s);
    EXPECT_THAT(presses(), IsEmpty());
}

TEST_F(SeekTest, IsIgnoredInASessionThatFits) {
    bench.setTrackMap(numbers(8), 0);
    worker.seekBank(1);
    EXPECT_FALSE(state.published.banksUsedBy == BankUser::seek);
}

TEST_F(SeekTest, IsDroppedWithALineWhereTheMapIsNotSure) {
    bench.setTrackMap(numbers(8), -1);
    state.published.session.sure = false; // there may be more tracks
    worker.seekBank(16);
    bench.run(2s);
    EXPECT_THAT(bench.lines, testing::Contains("✗ Dropped bank move: the bank position is unknown"));
}

TEST_F(SeekTest, IsNotHeldBackByTheTransport) {
    state.transportPlaying = true;
    worker.seekBank(8);
    ASSERT_TRUE(ends());
    EXPECT_EQ(host.offset, 8);
}

TEST_F(SeekTest, MayBeAskedForOnAnyThread) {
    world.runtime.background(Priority::normal, [this] { worker.seekBank(8); });
    world.runtime.runUntilIdle();
    EXPECT_TRUE(state.published.banksUsedBy == BankUser::seek);
    ASSERT_TRUE(ends());
    EXPECT_EQ(host.offset, 8);
}

// ---- The latest target wins

TEST_F(SeekTest, ChangesItsGoalWithoutASecondWorker) {
    worker.seekBank(12);
    bench.run(100ms);
    worker.seekBank(6);
    ASSERT_TRUE(ends());
    EXPECT_EQ(host.offset, 6);
    EXPECT_THAT(presses(), ElementsAre("0ms B0 2F 43", "150ms B0 2F 40", "192ms B0 2F 40"));
}

TEST_F(SeekTest, GoesOnFromATargetWhereAnotherComesWithin60Milliseconds) {
    worker.seekBank(1); // there after 42 ms
    bench.run(101ms);
    worker.seekBank(2);
    ASSERT_TRUE(ends());
    EXPECT_THAT(presses(), ElementsAre("0ms B0 2F 42", "102ms B0 2F 42"));
}

TEST_F(SeekTest, TakesATargetThatComesDuringTheLookAtTheDisplays) {
    worker.seekBank(1);
    bench.run(150ms);
    worker.seekBank(2);
    ASSERT_TRUE(ends());
    EXPECT_THAT(presses(), ElementsAre("0ms B0 2F 42", "222ms B0 2F 42"));
    EXPECT_EQ(host.offset, 2);
}

TEST_F(SeekTest, GoesOnFromWhereItShouldBeWhenTheDisplaysDoNotSay) {
    worker.seekBank(1);
    bench.run(150ms);
    bench.surfaceA.name(0, "????");
    worker.seekBank(2);
    ASSERT_TRUE(ends());
    EXPECT_THAT(presses(), ElementsAre("0ms B0 2F 42", "242ms B0 2F 42"));
    EXPECT_EQ(host.offset, 2);
}

// The worker ends 498 ms after the beginning. A request at that very instant, before or after, is heard.
TEST(Seek, LosesNoTargetThatComesAsItEnds) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        ModelWorld world{.runtime = NotingRuntime({.seed = seed})};
        ModelBench bench(world);
        ReceiverState& state = bench.state();
        bench.parts().surfaces.startSurfaces();
        bench.setTrackMap(numbers(20), 0);
        state.published.huiConnected = true;
        BankingHost host(bench, numbers(20));
        bench.run(2s);
        world.runtime.backgroundAfter(498ms, [&bench] { bench.parts().seekWorker.seekBank(3); });
        bench.parts().seekWorker.seekBank(12);
        bench.run(550ms);
        EXPECT_TRUE(state.published.banksUsedBy == BankUser::seek) << seed;
        bench.run(20s);
        EXPECT_FALSE(state.published.banksUsedBy == BankUser::seek) << seed;
        EXPECT_EQ(host.offset, 3) << seed;
        EXPECT_EQ(state.published.bankOffset, 3) << seed;
    }
}

// ---- Corrections

TEST_F(SeekTest, CorrectsALostPress) {
    host.deaf = true;
    world.runtime.postMainAfter(10ms, [this] { host.deaf = false; });
    worker.seekBank(8);
    ASSERT_TRUE(ends());
    EXPECT_EQ(host.offset, 8);
    EXPECT_THAT(presses(), ElementsAre("0ms B0 2F 43", "330ms B0 2F 43"));
}

TEST_F(SeekTest, CorrectsAtMostThreeTimesInVain) {
    host.deaf = true;
    worker.seekBank(8);
    ASSERT_TRUE(ends());
    EXPECT_THAT(presses(), ElementsAre("0ms B0 2F 43", "330ms B0 2F 43", "660ms B0 2F 43", "990ms B0 2F 43"));
    EXPECT_EQ(state.published.bankOffset, 0); // back to what the displays show
}

TEST_F(SeekTest, KeepsTheSurfacesWhileItsLastPressMayBeOnItsWay) {
    host.deaf = true;
    worker.seekBank(8);
    bench.run(990ms + 1099ms);
    EXPECT_TRUE(bench.parts().queue.isClosed());
    bench.run(30ms);
    EXPECT_FALSE(bench.parts().queue.isClosed());
}

TEST_F(SeekTest, EndsAtOnceWhenItsLastPressHasLedElsewhere) {
    worker.seekBank(8);
    bench.run(50ms);
    bench.surfaceA.name(0, "????"); // tells no position
    bench.run(330ms);
    EXPECT_FALSE(bench.parts().queue.isClosed());
}

TEST_F(SeekTest, CorrectsAPositionThatWasBelievedWrongly) {
    state.published.bankOffset = 8; // the displays show the first tracks
    worker.seekBank(8);
    ASSERT_TRUE(ends());
    EXPECT_EQ(host.offset, 8);
    EXPECT_THAT(presses(), ElementsAre("180ms B0 2F 43")); // after 60 ms for another target, and a look
}

TEST_F(SeekTest, DoesNotCorrectMoreOftenBecauseANewTargetComes) {
    host.deaf = true;
    worker.seekBank(8);
    bench.run(1230ms); // in the look at the displays that follows the third correction
    worker.seekBank(8);
    ASSERT_TRUE(ends());
    EXPECT_THAT(presses(),
                ElementsAre("0ms B0 2F 43", "330ms B0 2F 43", "660ms B0 2F 43", "990ms B0 2F 43", "1320ms B0 2F 43"));
}

TEST_F(SeekTest, LeavesItAtThatWhenThePositionIsLost) {
    worker.seekBank(8);
    bench.run(50ms);
    bench.surfaceA.name(0, "????");
    bench.run(329ms);
    EXPECT_TRUE(state.published.banksUsedBy == BankUser::seek);
    bench.run(1ms); // one look at the displays, until they are still, and no correction
    EXPECT_FALSE(state.published.banksUsedBy == BankUser::seek);
    EXPECT_THAT(presses(), ElementsAre("0ms B0 2F 43"));
    bench.run(1s); // it might be a value over the name
    EXPECT_EQ(state.published.bankOffset, -1);
}

TEST_F(SeekTest, EndsThoughTheWindowBecomesNarrower) {
    state.published.winW = 16;
    host.deaf = true;
    bench.setTrackMap(numbers(40), 0);
    worker.seekBank(20);
    bench.run(100ms);
    state.published.winW = 8;
    worker.seekBank(32); // out of reach for a window of 16
    EXPECT_TRUE(ends());
}

// ---- What the client is told

// With a phone that owns the link; the heartbeat is kept from resending by ending well before it would.
class ToldSeekTest : public OwnedModelTest {
protected:
    ToldSeekTest() {
        bench.surfaceA.ping();
        bench.run(1100ms); // a tick has seen it, and the one that resends is over
        state.published.huiConnected = true;
        bench.setTrackMap(numbers(20), 0);
        state.lastAutoPollAll = world.runtime.now() + 1h;
        host.show();
        bench.run(60ms); // the poll that a tick asked for is over
        markAll();
    }

    Lines types() {
        settle();
        Lines list;
        for (const std::string& line : phone->tape.takeBytes())
            if (line.size() >= 5 && !line.starts_with("01 11")) list.push_back(line.substr(3, 2));
        return list;
    }

    ReceiverState& state = bench.state();
    BankingHost host{bench, numbers(20)};
};

TEST_F(ToldSeekTest, EachStepIsToldBeforeTheDisplaysShowIt) {
    host.deaf = true;
    bench.parts().seekWorker.seekBank(9);
    bench.run(200ms);
    EXPECT_THAT(heard(0x16), ElementsAre("30ms 01 16 00 08 00 14 08", "180ms 01 16 00 09 00 14 08"));
}

TEST_F(ToldSeekTest, AStepIsToldWithAllThatThePositionDecides) {
    host.deaf = true;
    bench.parts().seekWorker.seekBank(9);
    bench.run(100ms);
    EXPECT_THAT(types(), ElementsAre("16", "18", "18", "18", "18", "18", "18", "18", "18", "19", "1A"));
}

TEST_F(ToldSeekTest, TheEndIsToldWithEverythingThatIsShown) {
    host.faders.assign(20, 0.5);
    bench.parts().seekWorker.seekBank(1);
    bench.run(221ms);
    types();
    bench.run(1ms);
    Lines expected{"16", "18", "18", "18", "18", "18", "18", "18", "18", "19", "1A"};
    expected.insert(expected.end(), 8, "10");
    expected.push_back("13");
    expected.insert(expected.end(), 8, "12");
    expected.insert(expected.end(), 16, "14");
    expected.insert(expected.end(), {"17", "1C"});
    EXPECT_EQ(types(), expected);
}

TEST_F(ToldSeekTest, TheAutomationModesAreAskedForInTheEnd) {
    state.lastAutoPollAll = distantPast;
    for (StripState& strip : state.published.strips)
        strip.mode = 1;
    bench.parts().seekWorker.seekBank(1);
    bench.run(222ms);
    EXPECT_THAT(state.published.strips, testing::Each(testing::Field(&StripState::mode, autoModeUnknown)));
    EXPECT_EQ(bench.heardOn(bench.surfaceA).back(), "222ms B0 2F 44");
}

} // namespace
} // namespace lumbrine
