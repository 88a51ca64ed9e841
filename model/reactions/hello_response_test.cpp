// What a client gets that says hello.
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

using testing::ElementsAreArray;
using testing::SizeIs;
using testing::StartsWith;

class HelloTest : public ModelTest {
protected:
    HelloTest() {
        bench.start();
        phone = bench.phone("192.168.1.7");
    }

    Lines hello() {
        phone->send({0x01, 0x00});
        world.runtime.runUntilIdle();
        return phone->tape.takeBytes();
    }

    // The message types in their order, repetitions once: "7F 13 12".
    static std::string types(const Lines& messages) {
        std::string order;
        for (const std::string& message : messages) {
            const std::string type = message.substr(3, 2);
            if (!order.ends_with(type)) order += (order.empty() ? "" : " ") + type;
        }
        return order;
    }

    static Lines ofType(const Lines& messages, const std::string& type) {
        Lines found;
        for (const std::string& message : messages)
            if (message.starts_with("01 " + type)) found.push_back(message);
        return found;
    }

    std::unique_ptr<Phone> phone;
};

TEST_F(HelloTest, IsAnsweredWithAPongBeforeAnythingElse) {
    EXPECT_EQ(hello().front(), "01 7F");
}

TEST_F(HelloTest, HasItsPongEvenWhileTheMainThreadIsBusy) {
    phone->send({0x01, 0x00});
    world.runtime.sleepFor(1ms); // runs no job of the main thread
    EXPECT_THAT(phone->tape.takeBytes(), ElementsAre("01 7F"));
    world.runtime.runUntilIdle();
    EXPECT_THAT(phone->tape.takeBytes(), testing::Not(IsEmpty()));
}

TEST_F(HelloTest, IsAnsweredWithEverythingInItsOrder) {
    bench.state().published.strips[0].name = "Kick";
    bench.state().published.strips[2].name = "Gt";
    for (StripState& strip : bench.state().published.strips)
        strip.shownFader = 0.5;
    bench.setTrackMap({"Kick", "Snr"}, 0);
    bench.state().published.session.surveyed = true;
    const Lines messages = hello();
    EXPECT_EQ(types(messages), "7F 10 13 12 14 15 16 17 18 19 1A 1C 1D 1B 1E 1F");
    EXPECT_THAT(ofType(messages, "10"), ElementsAre("01 10 00 4B 69 63 6B", "01 10 02 47 74 20 20"));
    EXPECT_THAT(ofType(messages, "12"), SizeIs(8));
    EXPECT_THAT(ofType(messages, "14"), SizeIs(16));
    EXPECT_THAT(ofType(messages, "16"), ElementsAre("01 16 00 00 00 02 08"));
    EXPECT_THAT(ofType(messages, "18"), SizeIs(8));
    EXPECT_THAT(ofType(messages, "1B"), SizeIs(2));
    EXPECT_THAT(ofType(messages, "1D"), ElementsAre("01 1D 00 00"));
}

TEST_F(HelloTest, IsAnsweredWithNeutralStateWhileNothingIsKnown) {
    const Lines messages = hello();
    EXPECT_EQ(types(messages), "7F 13 12 14 15 16 17 18 19 1A 1C 1D");
    EXPECT_THAT(ofType(messages, "16"), ElementsAre("01 16 FF FF 00 00 08"));
    EXPECT_THAT(ofType(messages, "1C"), ElementsAre("01 1C 00 00 00 00 00 00 00 00"));
}

TEST_F(HelloTest, TellsWhatTheTransportDoes) {
    bench.surfaceA.led(0x0E, 4, true);
    bench.surfaceA.led(0x0E, 5, true);
    world.runtime.runUntilIdle();
    EXPECT_THAT(ofType(hello(), "1D"), ElementsAre("01 1D 01 01"));
}

TEST_F(HelloTest, HoldsBackWhatIsInMotion) {
    for (const BankUser user : {BankUser::seek, BankUser::scan, BankUser::walk}) {
        bench.state().published.banksUsedBy = user;
        EXPECT_EQ(types(hello()), "7F 13 15 16 18 19 1A 1D");
        world.runtime.sleepFor(HelloResponse::statePeriod);
    }
}

TEST_F(HelloTest, BringsALongSessionInItsOrderAndToItsSenderOnly) {
    hello();
    const auto other = bench.phone("192.168.1.8");
    other->send({0x01, 0x00}); // refused, but known from now on
    bench.run(HelloResponse::statePeriod);
    bench.setTrackMap(std::vector<std::string>(200, "a"), 0);
    bench.state().published.session.surveyed = true;
    phone->tape.clear();
    other->tape.clear();
    phone->send({0x01, 0x00});
    bench.run(100ms);
    Lines messages = phone->tape.takeBytes();
    std::erase_if(messages, [](const std::string& message) { return message.starts_with("01 11"); }); // meters
    EXPECT_EQ(types(messages), "7F 13 12 14 15 16 17 18 19 1A 1C 1D 1B 1E 1F");
    const Lines rows = ofType(messages, "1B");
    ASSERT_THAT(rows, SizeIs(200));
    EXPECT_TRUE(std::ranges::is_sorted(rows)); // by index
    EXPECT_THAT(other->tape.takeBytes(), IsEmpty());
}

TEST_F(HelloTest, ThatComesAgainBeforeItsAnswerHasBegunIsAnsweredWithIt) {
    for (int i = 0; i < 100; ++i)
        phone->send({0x01, 0x00});
    world.runtime.sleepFor(1ms); // runs no job of the main thread
    EXPECT_THAT(phone->tape.takeBytes(), ElementsAreArray(Lines(100, "01 7F")));
    bench.setTrackMap({"Kick"}, 0); // what is told is what is so after the last of them
    world.runtime.runUntilIdle();
    EXPECT_THAT(ofType(phone->tape.takeBytes(), "16"), ElementsAre("01 16 00 00 00 01 08"));
}

TEST_F(HelloTest, ThatComesSoonAfterAnAnswerIsAnsweredOnceItsTimeIsOver) {
    hello();
    bench.run(100ms);
    for (int i = 0; i < 100; ++i)
        phone->send({0x01, 0x00});
    bench.run(150ms - 1us);
    const Lines before = phone->tape.takeBytes();
    EXPECT_THAT(ofType(before, "7F"), SizeIs(100));
    EXPECT_THAT(ofType(before, "1D"), IsEmpty()); // once in each state
    bench.run(1us);
    EXPECT_THAT(ofType(phone->tape.takeBytes(), "1D"), SizeIs(1));
    bench.run(1s);
    EXPECT_THAT(ofType(phone->tape.takeBytes(), "1D"), IsEmpty());
}

TEST_F(HelloTest, ThatComesWhileTheRowsAreOnTheirWayHasThemAllSentAgain) {
    bench.setTrackMap(std::vector<std::string>(1000, "a"), 0); // 0.5 s
    hello();
    bench.run(HelloResponse::statePeriod);
    hello();
    bench.run(1s);
    const Lines rows = ofType(phone->tape.takeBytes(), "1B");
    EXPECT_THAT(std::set<std::string>(rows.begin(), rows.end()), SizeIs(1000));
}

TEST_F(HelloTest, OfAFormerOwnerIsNotAnsweredAnyMore) {
    phone->send({0x01, 0x00});
    world.runtime.sleepFor(1ms);
    const auto other = bench.phone("192.168.1.8");
    other->send({0x01, 0x25});
    other->send({0x01, 0x00});
    world.runtime.sleepFor(1ms);
    world.runtime.runUntilIdle();
    EXPECT_THAT(phone->tape.takeBytes(), ElementsAre("01 7F"));
    EXPECT_THAT(ofType(other->tape.takeBytes(), "16"), SizeIs(1));
}

TEST_F(HelloTest, IsLoggedUntilTheClientIsShown) {
    hello();
    EXPECT_THAT(bench.takeLines(), ElementsAre("iOS connected: ::ffff:192.168.1.7"));
    bench.run(HelloResponse::statePeriod); // a tick comes
    hello();
    EXPECT_THAT(bench.takeLines(), IsEmpty());
}

TEST(HelloInJapanese, IsLoggedWithEveryLiveClient) {
    ModelWorld world;
    ModelBench bench(world, {.japanese = true});
    bench.start();
    const auto phone = bench.phone("192.168.1.7");
    const auto other = bench.phone("192.168.1.8");
    phone->send({0x01, 0x07, 0x00, 0x00});
    world.runtime.runUntilIdle();
    other->send({0x01, 0x00});
    world.runtime.runUntilIdle();
    phone->send({0x01, 0x00});
    world.runtime.runUntilIdle();
    EXPECT_THAT(bench.takeLines(), ElementsAre("iOS 接続: ::ffff:192.168.1.7, ::ffff:192.168.1.8"));
}

// ---- What the receiver finds out afterwards

class HelloWithoutMapTest : public HelloTest {
protected:
    HelloWithoutMapTest() {
        bench.state().published.huiConnected = true; // until the next tick
        bench.state().presence.firstPingAt = world.runtime.now() - 2001ms;
    }

    bool scans() {
        hello();
        return bench.state().published.calibrating();
    }
};

TEST_F(HelloWithoutMapTest, HasTheTracksScanned) {
    EXPECT_TRUE(scans());
    EXPECT_EQ(bench.lines.back(), "▶ Scanning all tracks… (PT's display will move briefly)");
    EXPECT_EQ(bench.state().lastAutoPollAll, distantPast); // the scan has the surfaces now
}

TEST_F(HelloWithoutMapTest, HasNothingScannedRightAfterProToolsHasCome) {
    bench.state().presence.firstPingAt = world.runtime.now() - 2s;
    EXPECT_FALSE(scans());
}

TEST_F(HelloWithoutMapTest, HasNothingScannedWithoutProToolsAndSaysNothingOfIt) {
    bench.state().published.huiConnected = false;
    EXPECT_FALSE(scans());
    EXPECT_THAT(bench.lines, ElementsAre("iOS connected: ::ffff:192.168.1.7"));
}

TEST_F(HelloWithoutMapTest, HasNothingScannedWhereThereIsAMap) {
    bench.setTrackMap({"x"}, 0);
    EXPECT_FALSE(scans());
}

TEST_F(HelloWithoutMapTest, HasASessionWithoutTracksScannedOnceUntilSomethingIsShownOrListed) {
    ReceiverState& state = bench.state();
    state.scans.sawNothing = true; // as after a scan
    EXPECT_FALSE(scans());
    bench.parts().metadata.takeList({{.name = "歌"}});
    EXPECT_TRUE(bench.parts().calibration.mayFindTracks());
    bench.parts().metadata.takeList({});
    EXPECT_FALSE(bench.parts().calibration.mayFindTracks());
    state.published.strips[7].name = "x";
    EXPECT_TRUE(bench.parts().calibration.mayFindTracks());
}

class HelloWithProToolsTest : public HelloTest {
protected:
    HelloWithProToolsTest() {
        bench.setTrackMap({"x"}, 0); // so that no scan is due
        bench.surfaceA.pingEverySecond();
        bench.run(1500ms); // found at 100 ms, its pan side reset by 1080 ms
        bench.mark();
    }
};

TEST_F(HelloWithProToolsTest, AsksForTheAutomationModesWhileNoneIsKnown) {
    hello();
    bench.run(150ms);
    const Lines presses = bench.heardOn(bench.surfaceA);
    EXPECT_THAT(Lines(presses.begin(), presses.begin() + 4),
                ElementsAre("0ms B0 0F 00", "0ms B0 2F 44", "150ms B0 0F 00", "150ms B0 2F 04"));
    bench.run(7 * 150ms);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), testing::Contains("1200ms B0 0F 07"));
}

TEST_F(HelloWithProToolsTest, AsksForNoModeWhenOneIsKnown) {
    bench.state().published.strips[15].mode = 1;
    hello();
    EXPECT_THAT(bench.heardOn(bench.surfaceA), IsEmpty());
}

TEST_F(HelloWithProToolsTest, AsksForNoModeWhileTheTransportRuns) {
    for (bool* runs : {&bench.state().transportPlaying, &bench.state().transportRecording}) {
        *runs = true;
        hello();
        EXPECT_EQ(bench.state().lastAutoPollAll, distantPast);
        *runs = false;
    }
}

TEST_F(HelloWithProToolsTest, AsksForNoModeWhileTheBanksMove) {
    for (const BankUser user : {BankUser::seek, BankUser::scan, BankUser::walk}) {
        bench.state().published.banksUsedBy = user;
        hello();
        EXPECT_EQ(bench.state().lastAutoPollAll, distantPast);
    }
}

TEST_F(HelloTest, AsksForNoModeWithoutProTools) {
    hello();
    EXPECT_EQ(bench.state().lastAutoPollAll, distantPast);
}

} // namespace
} // namespace lumbrine
