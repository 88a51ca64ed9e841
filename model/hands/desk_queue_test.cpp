// Whose turn it is, and what the client's hands get meanwhile.
#include "model/testing/banking_host.h"
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

using Kind = DeskJob::Kind;

class DeskQueueTest : public OwnedModelTest {
protected:
    DeskQueueTest() {
        bench.setTrackMap(numbers(20), 0);
        markAll();
    }

    // A job that takes that long, and is told in `story`.
    DeskJob job(Kind kind, const std::string& name, Duration time, int subject = 0) {
        return {
            .kind = kind,
            .name = command_name::mode,
            .subject = subject,
            .owner = Ownership{1},
            .begin =
                [this, name] {
                    tell(name + " begins");
                    return true;
                },
            .work = [this, time] { world.runtime.sleepFor(time); },
            .end = [this, name] { tell(name + " ends"); },
            .dropped = [this, name] { tell(name + " is dropped"); },
        };
    }

    void tell(const std::string& what) {
        const Duration since = world.runtime.now() - bench.origin;
        story.push_back(std::to_string(since / 1ms) + "ms " + what);
    }

    Lines heardOnA() { return bench.heardOn(bench.surfaceA); }
    Lines heardOnB() { return bench.heardOn(bench.surfaceB); }

    Lines takeStory() { return std::exchange(story, {}); }

    DeskQueue& queue = bench.parts().queue;
    ReceiverState& state = bench.state();
    Lines story;
};

// ---- Turns

TEST_F(DeskQueueTest, TheMostUrgentJobThatWaitsGoesFirst) {
    queue.request(job(Kind::poll, "poll", 150ms));
    for (const auto& [kind, name] : {std::pair(Kind::scan, "scan"), std::pair(Kind::walk, "walk"),
                                     std::pair(Kind::mode, "mode"), std::pair(Kind::seek, "seek")})
        queue.request(job(kind, name, 10ms));
    bench.run(1s);
    EXPECT_THAT(takeStory(), ElementsAre("0ms poll begins", "150ms poll ends", "150ms seek begins", "160ms seek ends",
                                         "160ms mode begins", "170ms mode ends", "170ms walk begins", "180ms walk ends",
                                         "180ms scan begins", "190ms scan ends"));
}

TEST_F(DeskQueueTest, JobsOfAKindGoInTheOrderInWhichTheyCame) {
    queue.request(job(Kind::poll, "poll", 10ms));
    for (const int strip : {5, 2, 9})
        queue.request(job(Kind::mode, "mode " + std::to_string(strip), 10ms, strip));
    bench.run(1s);
    EXPECT_THAT(takeStory(),
                testing::IsSupersetOf(Lines{"10ms mode 5 begins", "20ms mode 2 begins", "30ms mode 9 begins"}));
}

TEST_F(DeskQueueTest, ANewerJobTakesThePlaceOfAnOlderOneThatWaits) {
    queue.request(job(Kind::poll, "poll", 10ms));
    queue.request(job(Kind::mode, "old", 10ms, 3));
    queue.request(job(Kind::mode, "new", 10ms, 3));
    bench.run(1s);
    EXPECT_THAT(takeStory(), ElementsAre("0ms poll begins", "10ms poll ends", "10ms new begins", "20ms new ends"));
}

TEST_F(DeskQueueTest, AJobThatFindsNothingToDoLetsTheNextOneBegin) {
    DeskJob idle = job(Kind::seek, "seek", 10ms);
    idle.begin = [] { return false; };
    queue.request(job(Kind::poll, "poll", 10ms));
    queue.request(std::move(idle));
    queue.request(job(Kind::mode, "mode", 10ms));
    bench.run(1s);
    EXPECT_THAT(takeStory(), ElementsAre("0ms poll begins", "10ms poll ends", "10ms mode begins", "20ms mode ends"));
}

// ---- Soon, or not at all

TEST_F(DeskQueueTest, AJobThatHasWaitedTooLongIsDroppedAtThatTimeAndTold) {
    queue.request(job(Kind::seek, "seek", 5s));
    DeskJob mode = job(Kind::mode, "mode", 10ms);
    mode.until = world.runtime.now() + 1s;
    queue.request(std::move(mode));
    bench.run(999ms);
    EXPECT_THAT(takeStory(), ElementsAre("0ms seek begins"));
    bench.run(1ms);
    EXPECT_THAT(takeStory(), ElementsAre("1000ms mode is dropped"));
    EXPECT_THAT(bench.takeLines(), ElementsAre("✗ Dropped automation mode: the surfaces were busy"));
}

TEST_F(DeskQueueTest, WhatTheReceiverWantedItselfIsDroppedWithoutALine) {
    queue.request(job(Kind::seek, "seek", 5s));
    DeskJob scan = job(Kind::scan, "scan", 10ms);
    scan.owner.reset();
    scan.until = world.runtime.now() + 1s;
    queue.request(std::move(scan));
    bench.run(1s);
    EXPECT_THAT(takeStory(), ElementsAre("0ms seek begins", "1000ms scan is dropped"));
    EXPECT_THAT(bench.takeLines(), IsEmpty());
}

TEST_F(DeskQueueTest, DropsAreToldOnceForARunOfThem) {
    queue.request(job(Kind::seek, "seek", 12s));
    const auto dropOne = [this] {
        DeskJob mode = job(Kind::mode, "mode", 10ms);
        mode.until = world.runtime.now() + 1s;
        queue.request(std::move(mode));
        bench.run(1s);
        return bench.takeLines().size();
    };
    EXPECT_EQ(dropOne(), 1U);
    for (int seconds = 1; seconds < 10; ++seconds)
        EXPECT_EQ(dropOne(), 0U);
    EXPECT_EQ(dropOne(), 1U);
    bench.run(1s); // the job under way tells this test of its end
}

// ---- Owners

TEST_F(DeskQueueTest, WhatAFormerOwnerAskedForIsDropped) {
    queue.request(job(Kind::poll, "poll", 10ms));
    queue.request(job(Kind::mode, "mode", 10ms));
    const auto other = bench.phone("192.168.1.8");
    other->send({0x01, 0x25});
    bench.run(1s);
    EXPECT_THAT(takeStory(), ElementsAre("0ms poll begins", "0ms mode is dropped", "10ms poll ends"));
    EXPECT_THAT(bench.takeLines(), testing::Contains("✗ Dropped automation mode: another device has taken control"));
}

TEST_F(DeskQueueTest, AJobUnderWayCanTellThatItsOwnerHasGone) {
    EXPECT_TRUE(queue.isWanted(Ownership{1}));
    const auto other = bench.phone("192.168.1.8");
    other->send({0x01, 0x25});
    settle();
    EXPECT_FALSE(queue.isWanted(Ownership{1}));
    EXPECT_TRUE(queue.isWanted({}));
}

// ---- Hands

TEST_F(DeskQueueTest, AWalkWaitsUntilNoFaderIsHeldOrWasMovedWithinOneAndAHalfSeconds) {
    phone->send({0x01, 0x02, 0x03});
    settle();
    queue.request(job(Kind::walk, "walk", 10ms));
    bench.run(1s);
    EXPECT_THAT(takeStory(), IsEmpty());
    phone->send({0x01, 0x01, 0x04, 0x20, 0x00}); // another fader, untouched
    phone->send({0x01, 0x03, 0x03});
    settle();
    bench.run(1499ms);
    EXPECT_THAT(takeStory(), IsEmpty());
    bench.run(DeskQueue::handsLook + 1ms);
    EXPECT_THAT(takeStory(), testing::SizeIs(2));
}

TEST_F(DeskQueueTest, AScanThatTheClientAsksForBeginsWhenItsHandRests) {
    bench.surfaceA.pingEverySecond();
    bench.run(1s);
    phone->send({0x01, 0x02, 0x03});
    phone->send({0x01, 0x0C});
    bench.run(2s);
    EXPECT_FALSE(state.published.calibrating());
    phone->send({0x01, 0x01, 0x03, 0x20, 0x00});
    phone->send({0x01, 0x03, 0x03});
    bench.run(1499ms);
    EXPECT_FALSE(state.published.calibrating());
    bench.run(DeskQueue::handsLook + 1ms);
    EXPECT_TRUE(state.published.calibrating());
}

TEST_F(DeskQueueTest, AScanThatTheClientAsksForIsDroppedAfterTenSecondsUnderItsHand) {
    bench.surfaceA.pingEverySecond();
    bench.run(1s);
    phone->send({0x01, 0x02, 0x03});
    bench.run(10ms);
    phone->send({0x01, 0x0C});
    for (int seconds = 0; seconds < 10; ++seconds) {
        EXPECT_THAT(bench.takeLines(), testing::Not(testing::Contains("✗ Dropped rescan: a fader was in use")));
        sendNothing();
        bench.run(1s);
    }
    EXPECT_THAT(bench.takeLines(), testing::Contains("✗ Dropped rescan: a fader was in use"));
    phone->send({0x01, 0x03, 0x03});
    bench.run(3s);
    EXPECT_FALSE(state.published.calibrating());
}

TEST_F(DeskQueueTest, SeeksAndModesDoNotWaitForHands) {
    phone->send({0x01, 0x02, 0x03});
    settle();
    markAll();
    queue.request(job(Kind::mode, "mode", 10ms));
    queue.request(job(Kind::seek, "seek", 10ms));
    bench.run(1s);
    EXPECT_THAT(takeStory(), ElementsAre("0ms mode begins", "10ms mode ends", "10ms seek begins", "20ms seek ends"));
}

TEST_F(DeskQueueTest, WhatIsTouchedIsReleasedBeforeTheBanksMove) {
    phone->send({0x01, 0x02, 0x03});
    phone->send({0x01, 0x02, 0x0A});
    settle();
    markAll();
    queue.request(job(Kind::seek, "seek", 100ms));
    settle();
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 0F 03", "0ms B0 2F 00"));
    EXPECT_THAT(heardOnB(), ElementsAre("0ms B0 0F 02", "0ms B0 2F 00"));
    EXPECT_THAT(state.published.strips, testing::Each(testing::Field(&StripState::touched, false)));
}

TEST_F(DeskQueueTest, AFingerThatWasThereMovesNothingUntilItTouchesAnew) {
    phone->send({0x01, 0x02, 0x03});
    settle();
    queue.request(job(Kind::seek, "seek", 100ms));
    bench.run(50ms);
    markAll();
    phone->send({0x01, 0x01, 0x03, 0x20, 0x00});
    phone->send({0x01, 0x01, 0x04, 0x20, 0x00}); // one that was not touched
    bench.run(100ms);
    phone->send({0x01, 0x01, 0x03, 0x20, 0x00});
    settle();
    EXPECT_THAT(heardOnA(), IsEmpty());
    phone->send({0x01, 0x02, 0x03});
    phone->send({0x01, 0x01, 0x03, 0x20, 0x00});
    settle();
    EXPECT_THAT(heardOnA(), testing::SizeIs(4));
}

TEST_F(DeskQueueTest, ATouchDuringAJobIsNoneAfterIt) {
    queue.request(job(Kind::seek, "seek", 100ms));
    phone->send({0x01, 0x02, 0x03});
    bench.run(200ms);
    markAll();
    phone->send({0x01, 0x01, 0x03, 0x20, 0x00});
    phone->send({0x01, 0x03, 0x03});
    settle();
    EXPECT_THAT(heardOnA(), IsEmpty());
    EXPECT_FALSE(state.published.strips[3].touched);
}

TEST_F(DeskQueueTest, APressWaitsForTheEndOfTheJobAndGoesToTheStripThatShowsItsTrack) {
    DeskJob seek = job(Kind::seek, "seek", 999ms);
    seek.end = [this] { bench.setTrackMap(numbers(20), 2); };
    queue.request(std::move(seek));
    markAll();
    phone->send({0x01, 0x04, 0x03}); // mute
    bench.run(998ms);
    EXPECT_THAT(heardOnA(), IsEmpty());
    bench.run(1ms);
    EXPECT_THAT(heardOnA(), ElementsAre("999ms B0 0F 01", "999ms B0 2F 42"));
}

TEST_F(DeskQueueTest, APressWhoseTrackIsNotShownAfterTheJobIsDropped) {
    DeskJob seek = job(Kind::seek, "seek", 100ms);
    seek.end = [this] { bench.setTrackMap(numbers(20), 8); };
    queue.request(std::move(seek));
    markAll();
    phone->send({0x01, 0x04, 0x03});
    bench.run(2s);
    EXPECT_THAT(heardOnA(), IsEmpty());
    EXPECT_THAT(bench.takeLines(), testing::Contains("✗ Dropped button press: its track is no longer shown"));
}

TEST_F(DeskQueueTest, APressIsDroppedAfterASecondOfWaiting) {
    queue.request(job(Kind::scan, "scan", 1001ms));
    phone->send({0x01, 0x04, 0x03});
    bench.run(999ms);
    EXPECT_THAT(bench.takeLines(), IsEmpty());
    bench.run(1ms);
    EXPECT_THAT(bench.takeLines(), ElementsAre("✗ Dropped button press: the surfaces were busy"));
    markAll();
    bench.run(1s);
    EXPECT_THAT(heardOnA(), IsEmpty());
}

TEST_F(DeskQueueTest, TurnsAndPanSeeksWaitToo) {
    queue.request(job(Kind::seek, "seek", 100ms));
    markAll();
    phone->send({0x01, 0x07, 0x03, 0x05});
    phone->send({0x01, 0x09, 0x04, 0x06});
    bench.run(99ms);
    EXPECT_THAT(heardOnA(), IsEmpty());
    bench.run(1ms);
    EXPECT_THAT(heardOnA(), testing::Contains("100ms B0 43 45"));
    EXPECT_TRUE(state.published.strips[4].panSeek);
}

TEST_F(DeskQueueTest, APanSeekEndsWhenTheBanksMove) {
    phone->send({0x01, 0x09, 0x04, 0x06});
    settle();
    ASSERT_TRUE(state.published.strips[4].panSeek);
    queue.request(job(Kind::seek, "seek", 100ms));
    EXPECT_FALSE(state.published.strips[4].panSeek);
}

TEST_F(DeskQueueTest, AFloodOfPressesIsBounded) {
    queue.request(job(Kind::seek, "seek", 100ms));
    markAll();
    for (int press = 0; press < 100; ++press)
        phone->send({0x01, 0x04, 0x03});
    bench.run(100ms);
    EXPECT_THAT(heardOnA(), testing::SizeIs(2 * DeskQueue::maxActs));
}

} // namespace
} // namespace lumbrine
