// Who counts as present, and what happens when somebody comes or goes.
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

class PresenceWatchTest : public ModelTest {
protected:
    PresenceWatch& watch = bench.parts().presence;
    ReceiverState& state = bench.state();

    // A world in which time stands where ages of a few seconds are possible, and in which no tick comes between.
    PresenceWatchTest() { bench.run(10s); }

    TimePoint ago(Duration age) { return world.runtime.now() - age; }
};

TEST_F(PresenceWatchTest, ProToolsIsThereForTwoSecondsAfterAPing) {
    watch.watchProTools();
    EXPECT_FALSE(state.published.huiConnected);
    state.presence.lastPing = ago(1999ms);
    watch.watchProTools();
    EXPECT_TRUE(state.published.huiConnected);
    state.presence.lastPing = ago(2000ms);
    watch.watchProTools();
    EXPECT_FALSE(state.published.huiConnected);
}

TEST_F(PresenceWatchTest, AClientIsThereForFiveSecondsAfterADatagram) {
    watch.watchClient();
    EXPECT_FALSE(state.published.iosConnected);
    state.presence.lastUDP = ago(4999ms);
    watch.watchClient();
    EXPECT_TRUE(state.published.iosConnected);
    state.presence.lastUDP = ago(5000ms);
    watch.watchClient();
    EXPECT_FALSE(state.published.iosConnected);
}

TEST_F(PresenceWatchTest, PingsAndDatagramsCountBeforeTheMainThreadComesToThem) {
    bench.start();
    const auto phone = bench.phone("192.168.1.7");
    bench.surfaceA.ping();
    phone->send({0x01, 0x07, 0x00, 0x00});
    world.runtime.sleepFor(1ms); // runs no job of the main thread
    watch.watchProTools();
    watch.watchClient();
    EXPECT_TRUE(state.published.huiConnected);
    EXPECT_TRUE(state.published.iosConnected);
}

TEST_F(PresenceWatchTest, PublishesChangesOnly) {
    int changes = 0;
    bench.model->onChange([&changes] { ++changes; });
    state.presence.lastPing = state.presence.lastUDP = ago(1s);
    for (int i = 0; i < 3; ++i) {
        watch.watchProTools();
        watch.watchClient();
        watch.watchWindowWidth();
    }
    EXPECT_EQ(changes, 2);
}

// ---- The window

TEST_F(PresenceWatchTest, BothSurfacesMakeASixteenStripWindow) {
    state.presence.lastPing = ago(1s);
    state.presence.lastPingB = ago(1999ms);
    watch.watchProTools();
    watch.watchWindowWidth();
    EXPECT_EQ(state.published.winW, 16);
    state.presence.lastPingB = ago(2000ms);
    watch.watchWindowWidth();
    EXPECT_EQ(state.published.winW, 8);
    EXPECT_THAT(bench.takeLines(),
                ElementsAre("✓ Second surface connected → 16-ch window", "Second surface lost → back to 8-ch window"));
}

TEST_F(PresenceWatchTest, TheSecondSurfaceAloneMakesNoWiderWindow) {
    state.presence.lastPingB = ago(0ms);
    watch.watchProTools();
    watch.watchWindowWidth();
    EXPECT_EQ(state.published.winW, 8);
}

TEST(PresenceWatchInJapanese, TellsOfTheWindow) {
    ModelWorld world;
    ModelBench bench(world, {.japanese = true});
    bench.state().published.huiConnected = true;
    bench.state().presence.lastPingB = world.runtime.now();
    bench.parts().presence.watchWindowWidth();
    bench.state().published.huiConnected = false;
    bench.parts().presence.watchWindowWidth();
    EXPECT_THAT(bench.takeLines(),
                ElementsAre("✓ 2台目サーフェス接続 → 16ch 窓に拡大", "2台目サーフェス切断 → 8ch 窓に戻ります"));
}

class WindowChangeTest : public OwnedModelTest {};

TEST_F(WindowChangeTest, NothingIsPressedOrTurnedOnStripsThatHaveGone) {
    bench.setTrackMap({"A", "B", "C"}, -1); // no scan comes
    bench.surfaceA.pingEverySecond();
    bench.surfaceB.ping();
    bench.run(2400ms);
    bench.heardOn(bench.surfaceB);
    phone->send({0x01, 0x04, 0x0D});
    phone->send({0x01, 0x07, 0x0E, 0x01});
    phone->send({0x01, 0x0F, 0x0F, 0x02});
    settle();
    EXPECT_THAT(bench.heardOn(bench.surfaceB), IsEmpty());

    bench.surfaceB.ping();
    bench.run(400ms);
    bench.heardOn(bench.surfaceB);
    phone->send({0x01, 0x07, 0x0E, 0x01});
    settle();
    EXPECT_THAT(bench.heardOn(bench.surfaceB), testing::SizeIs(1));
}

TEST_F(WindowChangeTest, TheClientIsToldWhereTheNewWindowLies) {
    std::vector<std::string> names;
    for (char c = 'A'; c <= 'T'; ++c)
        names.emplace_back(1, c);
    bench.setTrackMap(names, 2);
    for (std::size_t i = 0; i < stripCount; ++i)
        bench.state().published.strips[i].name = names[i + 2];
    bench.surfaceA.ping();
    bench.surfaceB.ping();
    bench.run(200ms);
    EXPECT_THAT(heard(0x16), ElementsAre("200ms 01 16 00 02 00 14 10"));
}

TEST_F(WindowChangeTest, TheWiderWindowMayShowWhereTheNarrowOneCouldNot) {
    std::vector<std::string> names;
    for (const char c : std::string("ABCDEFGHABCDEFGHIJKL"))
        names.emplace_back(1, c);
    bench.setTrackMap(names, -1);
    for (std::size_t i = 0; i < stripCount; ++i)
        bench.state().published.strips[i].name = names[i];
    bench.surfaceA.ping();
    bench.surfaceB.ping();
    bench.run(200ms);
    EXPECT_EQ(bench.model->published().bankOffset, 0);
    EXPECT_THAT(heard(0x16), ElementsAre("200ms 01 16 00 00 00 14 10", // found, and told with the width
                                         "200ms 01 16 00 00 00 14 10"));
}

TEST_F(WindowChangeTest, TheNarrowerWindowMayShowTooLittle) {
    std::vector<std::string> names;
    for (const char c : std::string("ABCDEFGHABCDEFGHIJKL"))
        names.emplace_back(1, c);
    bench.setTrackMap(names, 0);
    for (std::size_t i = 0; i < stripCount; ++i)
        bench.state().published.strips[i].name = names[i];
    bench.surfaceA.pingEverySecond();
    bench.surfaceB.ping();
    bench.run(200ms);
    EXPECT_THAT(heard(0x16), ElementsAre("200ms 01 16 00 00 00 14 10"));
    bench.run(2s);
    EXPECT_EQ(bench.model->published().bankOffset, -1);
    EXPECT_THAT(heard(0x16), ElementsAre("2200ms 01 16 FF FF 00 14 08", // lost, and told with the width
                                         "2200ms 01 16 FF FF 00 14 08"));
}

TEST_F(WindowChangeTest, TheWindowNarrowsWhenTheSecondSurfaceFallsSilent) {
    bench.surfaceA.pingEverySecond();
    bench.surfaceB.ping();
    bench.run(200ms);
    EXPECT_EQ(bench.model->published().winW, 16);
    bench.run(1799ms);
    EXPECT_EQ(bench.model->published().winW, 16);
    bench.run(201ms);
    EXPECT_EQ(bench.model->published().winW, 8);
}

// ---- Pan sides

class PanSideTest : public ModelTest {
protected:
    PanSideTest() {
        bench.start();
        bench.run(100ms);            // on a tick; the next one is 400 ms away
        bench.setTrackMap({"x"}, 0); // so that no scan is due
        bench.mark();
    }

    static Lines reset(const Lines& times) {
        const Lines bytes{"B0 0F 0B", "B0 2F 47", "B0 0F 0B", "B0 2F 07",
                          "B0 0F 0B", "B0 2F 42", "B0 0F 0B", "B0 2F 02"};
        Lines lines;
        for (std::size_t i = 0; i < bytes.size(); ++i)
            lines.push_back(times[i / 2] + "ms " + bytes[i]);
        return lines;
    }
};

TEST_F(PanSideTest, AreBothLeft800MillisecondsAfterProToolsHasCome) {
    bench.surfaceA.pingEverySecond();
    bench.state().published.panRight = true;
    bench.run(1199ms);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), IsEmpty());
    bench.run(181ms);
    EXPECT_EQ(bench.heardOn(bench.surfaceA), reset({"1200", "1260", "1320", "1380"}));
    EXPECT_THAT(bench.heardOn(bench.surfaceB), IsEmpty());
    EXPECT_FALSE(bench.state().published.panRight);
    EXPECT_THAT(bench.takeLines(),
                ElementsAre("♥ ping #1 received → replied (connection alive)",
                            "→ pan mode force-reset to Pan Left (SEND A→PAN)", "← Pan mode: Pan Left"));
}

TEST_F(PanSideTest, AreResetOnceForEachConnection) {
    bench.surfaceA.pingEverySecond();
    bench.run(5s);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), testing::SizeIs(8));
    bench.surfaceA.stopPinging();
    bench.run(5s);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), IsEmpty());
    bench.surfaceA.ping();
    bench.run(2s);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), testing::SizeIs(8));
}

TEST_F(PanSideTest, OfTheSecondSurfaceAreResetWhenItComesAndWithTheFirst) {
    bench.surfaceA.pingEverySecond();
    bench.surfaceB.pingEverySecond();
    bench.run(2s);
    EXPECT_EQ(bench.heardOn(bench.surfaceA), reset({"1200", "1260", "1320", "1380"}));
    Lines expected = reset({"400", "460", "520", "580"});
    for (const std::string& line : reset({"1380", "1440", "1500", "1560"}))
        expected.push_back(line);
    EXPECT_EQ(bench.heardOn(bench.surfaceB), expected);
}

TEST_F(PanSideTest, OfALaterSecondSurfaceFollowThoseOfTheFirst) {
    bench.surfaceA.pingEverySecond();
    bench.run(2s);
    bench.parts().pan.setPanMode(true);
    bench.mark();
    bench.surfaceB.pingEverySecond();
    bench.run(1s);
    Lines expected = reset({"400", "460", "520", "580"});
    for (const char* line : {"580ms B0 0F 0B", "580ms B0 2F 42", "640ms B0 0F 0B", "640ms B0 2F 02"})
        expected.emplace_back(line);
    EXPECT_EQ(bench.heardOn(bench.surfaceB), expected);
    EXPECT_TRUE(bench.parts().surfaces.engine(SurfaceID::B).showsRightPan());
}

TEST_F(PanSideTest, ThatTheClientChangesMeanwhileAreSetAfterwards) {
    bench.surfaceA.pingEverySecond();
    bench.run(1250ms); // surface B is not there and has no reset to wait for
    bench.parts().pan.toggleSide();
    bench.run(200ms);
    Lines expected = reset({"1200", "1260", "1320", "1380"});
    for (const char* line : {"1380ms B0 0F 0B", "1380ms B0 2F 42", "1440ms B0 0F 0B", "1440ms B0 2F 02"})
        expected.emplace_back(line);
    EXPECT_EQ(bench.heardOn(bench.surfaceA), expected);
    EXPECT_TRUE(bench.state().published.panRight);
    EXPECT_TRUE(bench.parts().surfaces.engine(SurfaceID::A).showsRightPan());
}

} // namespace
} // namespace lumbrine
