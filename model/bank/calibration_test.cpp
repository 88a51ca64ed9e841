// Scanning the banks: when, how, and with what result.
#include "base/fader_value.h"
#include "model/testing/banking_host.h"
#include "model/testing/model_test.h"
#include "model/testing/session_columns.h"

namespace lumbrine {
namespace {

const std::string started = "▶ Scanning all tracks… (PT's display will move briefly)";
const std::string postponed = "Scan: postponed while playing/recording (runs automatically after stop)";

// Connected for long, at rest, without a map; no heartbeat.
class ScanTest : public ModelTest {
protected:
    ScanTest() {
        bench.parts().surfaces.startSurfaces();
        bench.run(10s);
        state.published.huiConnected = true;
        state.presence.firstPingAt = world.runtime.now() - 10s;
        bench.takeLines();
    }

    // A request, and whether it was heard.
    bool scanBegins(bool force) {
        scan.calibrateBanks(force);
        return bench.takeLines() == Lines{started};
    }

    bool scanEnds(Duration limit) {
        return world.runtime.runUntil([this] { return !state.published.calibrating(); }, limit);
    }

    Calibration& scan = bench.parts().calibration;
    ReceiverState& state = bench.state();
};

// ---- Admission

TEST_F(ScanTest, BeginsWithALine) {
    scan.calibrateBanks(false);
    EXPECT_TRUE(state.published.calibrating());
    EXPECT_THAT(bench.lines, ElementsAre(started));
}

TEST_F(ScanTest, IsRefusedWithoutProTools) {
    state.published.huiConnected = false;
    scan.calibrateBanks(false);
    EXPECT_THAT(bench.takeLines(), IsEmpty());
    scan.calibrateBanks(true);
    EXPECT_THAT(bench.takeLines(), ElementsAre("Scan: aborted (Pro Tools not connected)"));
    EXPECT_FALSE(state.published.calibrating());
}

TEST_F(ScanTest, IsRefusedSilentlyWhileTheBanksAreBeingMoved) {
    state.transportPlaying = true; // which would be told
    for (const BankUser user : {BankUser::seek, BankUser::scan, BankUser::walk}) {
        state.published.banksUsedBy = user;
        scan.calibrateBanks(true);
    }
    EXPECT_THAT(bench.lines, IsEmpty());
}

TEST_F(ScanTest, BeginsNotOfItsOwnAccordUnderTheClientsHand) {
    state.published.strips[9].touched = true;
    scan.calibrateBanks(false);
    EXPECT_FALSE(state.published.calibrating());
    state.published.strips[9].touched = false;
    state.published.strips[9].movedByClient = world.runtime.now() - 1499ms;
    scan.calibrateBanks(false);
    EXPECT_FALSE(state.published.calibrating());
    EXPECT_THAT(bench.lines, IsEmpty());
}

TEST_F(ScanTest, OnlyAForcedOneReplacesAMap) {
    bench.setTrackMap({"a"}, 0);
    state.transportPlaying = true;
    scan.calibrateBanks(false);
    EXPECT_THAT(bench.takeLines(), IsEmpty()); // not even the transport is looked at
    state.transportPlaying = false;
    EXPECT_TRUE(scanBegins(true));
}

TEST_F(ScanTest, IsPostponedOncePerStretchOfPlaying) {
    state.transportPlaying = true;
    scan.calibrateBanks(true);
    scan.calibrateBanks(true);
    scan.calibrateBanks(false);
    EXPECT_THAT(bench.takeLines(), ElementsAre(postponed));
    EXPECT_FALSE(state.published.calibrating());

    bench.run(60s); // no line is told twice within a minute
    state.transportPlaying = false;
    EXPECT_TRUE(scanBegins(true));
    ASSERT_TRUE(scanEnds(10s));
    state.transportRecording = true;
    bench.takeLines();
    scan.calibrateBanks(true);
    EXPECT_THAT(bench.takeLines(), ElementsAre(postponed));
}

TEST_F(ScanTest, IsNotBegunByItselfInTheFirstTwoSecondsOfPings) {
    state.presence.firstPingAt = world.runtime.now() - 2s;
    EXPECT_FALSE(scanBegins(false));
    bench.run(Duration(1));
    EXPECT_TRUE(scanBegins(false));
}

TEST_F(ScanTest, IsBegunAtOnceWhenForced) {
    state.presence.firstPingAt = world.runtime.now();
    EXPECT_TRUE(scanBegins(true));
}

TEST_F(ScanTest, ThatComesTooEarlyStillEndsTheStretchOfPlaying) {
    state.transportPlaying = true;
    scan.calibrateBanks(true);
    state.transportPlaying = false;
    bench.run(60s);
    state.presence.firstPingAt = world.runtime.now();
    EXPECT_FALSE(scanBegins(false));
    state.transportPlaying = true;
    bench.takeLines();
    scan.calibrateBanks(true);
    EXPECT_THAT(bench.takeLines(), ElementsAre(postponed));
}

TEST(ScanInJapanese, TellsWhatItDoes) {
    ModelWorld world;
    ModelBench bench(world, {.japanese = true});
    bench.parts().surfaces.startSurfaces();
    bench.run(1s);
    ReceiverState& state = bench.state();
    Calibration& scan = bench.parts().calibration;
    for (int strip = 0; strip < stripsPerSurface; ++strip)
        bench.surfaceA.name(strip, "Vox "); // which is ambiguous
    bench.run(1s);
    bench.takeLines();

    scan.calibrateBanks(true);
    state.published.huiConnected = true;
    state.transportPlaying = true;
    scan.calibrateBanks(true);
    state.transportPlaying = false;
    scan.calibrateBanks(true);
    const auto ended = [&state] { return !state.published.calibrating(); };
    ASSERT_TRUE(world.runtime.runUntil(ended, 30s));
    bench.run(2s);
    ASSERT_TRUE(world.runtime.runUntil(ended, 30s));
    EXPECT_THAT(bench.lines,
                ElementsAre("計測: Pro Tools 未接続のため中止",
                            "計測: 再生/録音中のため見送り（停止後に自動で行います）", //
                            "▶ トラック全体を計測中…（PT の表示が一瞬動きます）", "✓ 全 8 トラックを把握しました",
                            "位置を特定できないため測り直します…", "▶ トラック全体を計測中…（PT の表示が一瞬動きます）",
                            "✓ 全 8 トラックを把握しました", "位置を特定できません（地図と表示が合いません）"));
}

// ---- The scan

class ScanOf20TracksTest : public ScanTest {
protected:
    ScanOf20TracksTest() {
        for (int track = 0; track < 20; ++track)
            host.faders.push_back(track / 16383.0);
        host.show();
        bench.learnThatTheHostIsQuick();
        bench.run(5s);
        bench.mark();
    }

    Lines presses() {
        Lines lines;
        for (const std::string& line : bench.heardOn(bench.surfaceA))
            if (line.find("B0 2F 4") != std::string::npos) lines.push_back(line);
        return lines;
    }

    std::vector<int> rawFaders() {
        std::vector<int> raw;
        raw.reserve(column(state.published.session, &Track::fader).size());
        for (const auto& fader : column(state.published.session, &Track::fader))
            raw.push_back(fader ? FaderValue::ofUnit(*fader + 0.00001).raw() : -1);
        return raw;
    }

    BankingHost host{bench, numbers(20)};
};

TEST_F(ScanOf20TracksTest, WaitsForTheDisplaysAroundEachPress) {
    scan.calibrateBanks(false);
    bench.run(4124ms);
    EXPECT_TRUE(state.published.calibrating());
    bench.run(1ms);
    EXPECT_FALSE(state.published.calibrating());
    EXPECT_THAT(presses(), ElementsAre("240ms B0 2F 41", "345ms B0 2F 40", // back, where nothing moves
                                       "1695ms B0 2F 43", "2085ms B0 2F 43", "2475ms B0 2F 43", // nor here
                                       "3705ms B0 2F 41", "3855ms B0 2F 41"));                  // to where it began
}

TEST_F(ScanOf20TracksTest, WaitsUntilTheDisplaysHaveSettledFirst) {
    host.show();
    world.runtime.runUntilIdle();
    bench.mark();
    scan.calibrateBanks(false);
    bench.run(1489ms);
    EXPECT_THAT(presses(), IsEmpty());
    bench.run(1ms); // 1.25 s, polled every 50 ms, and two stable windows
    EXPECT_THAT(presses(), ElementsAre("1490ms B0 2F 41"));
}

TEST_F(ScanOf20TracksTest, FindsTheDisplaysSettledOnceTheyHaveBeenStillForMoreThan1200Milliseconds) {
    for (const bool longer : {false, true}) {
        host.show();
        bench.run(longer ? 1200ms + 1ns : 1200ms);
        bench.mark();
        scan.calibrateBanks(true);
        bench.run(longer ? 240ms : 290ms); // looked at every 50 ms, then two stable windows
        EXPECT_THAT(presses(), ElementsAre(longer ? "240ms B0 2F 41" : "290ms B0 2F 41"));
        ASSERT_TRUE(scanEnds(10s));
    }
}

TEST_F(ScanTest, WaitsNoLongerThanSixSecondsForTheDisplaysToSettle) {
    BankingHost host(bench, numbers(8));
    const auto changes = world.runtime.repeatOnMain(
        50ms, [this, count = 0]() mutable { bench.surfaceA.name(0, std::to_string(1000 + count++ % 9000)); });
    bench.run(100ms);
    bench.mark();
    scan.calibrateBanks(false);
    bench.run(7439ms);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), IsEmpty());
    bench.run(1ms); // and two windows that were not stable
    EXPECT_THAT(bench.heardOn(bench.surfaceA), ElementsAre("7440ms B0 0F 0A", "7440ms B0 2F 41"));
}

TEST_F(ScanOf20TracksTest, CommitsTheMapBeforeItReturns) {
    scan.calibrateBanks(false);
    bench.run(3584ms);
    EXPECT_THAT(displaysOf(state.published.session), IsEmpty());
    bench.takeLines();
    bench.run(1ms);
    EXPECT_EQ(displaysOf(state.published.session), numbers(20));
    EXPECT_TRUE(state.fullTableDirty);
    EXPECT_EQ(state.published.bankOffset, -1); // 12 by the names, but that passes by
    EXPECT_THAT(bench.takeLines(), ElementsAre("✓ Mapped all 20 tracks"));
    EXPECT_TRUE(state.published.calibrating());
}

TEST_F(ScanOf20TracksTest, LooksWhereTheSurfacesAreWhenItHasReturned) {
    scan.calibrateBanks(false);
    bench.run(4115ms);
    EXPECT_EQ(state.published.bankOffset, -1);
    ASSERT_TRUE(scanEnds(1s));
    EXPECT_EQ(state.published.bankOffset, 0);
}

TEST_F(ScanOf20TracksTest, RemembersTheFadersThatItPasses) {
    scan.calibrateBanks(false);
    ASSERT_TRUE(scanEnds(10s));
    EXPECT_THAT(rawFaders(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19));
}

TEST_F(ScanOf20TracksTest, KeepsTheLaterFaderWhereBanksOverlap) {
    scan.calibrateBanks(false);
    bench.run(2045ms); // the second bank has been seen, with track 13 on it; so it will be with the third
    host.faders[13] = 1000 / 16383.0;
    ASSERT_TRUE(scanEnds(10s));
    EXPECT_EQ(rawFaders()[13], 1000);
}

TEST_F(ScanOf20TracksTest, ReplacesAnOldMapWhole) {
    bench.setTrackMap(numbers(99), 0);
    scan.calibrateBanks(true);
    ASSERT_TRUE(scanEnds(10s));
    EXPECT_EQ(displaysOf(state.published.session), numbers(20));
    EXPECT_THAT(column(state.published.session, &Track::fader), testing::SizeIs(20));
}

TEST_F(ScanOf20TracksTest, HasNoModesAndPansToTellBeforeAnyWereCaptured) {
    scan.calibrateBanks(true);
    ASSERT_TRUE(scanEnds(10s));
    EXPECT_FALSE(state.published.session.surveyed);
}

TEST_F(ScanOf20TracksTest, DropsModesAndPansOfAnotherSession) {
    bench.setTrackMap(numbers(21), 0);
    state.published.session.surveyed = true;
    state.published.session.tracks[3].mode = 4;
    state.published.session.tracks[3].pan = SessionPan{.known = true};
    scan.calibrateBanks(true);
    ASSERT_TRUE(scanEnds(10s));
    EXPECT_EQ(column(state.published.session, &Track::mode), std::vector<std::uint8_t>(20, autoModeUnknown));
    EXPECT_FALSE(state.published.session.tracks[3].pan);
    EXPECT_TRUE(state.published.session.surveyed); // the client's tables are to be emptied

    state.published.session.tracks[3].mode = 4;
    scan.calibrateBanks(true);
    ASSERT_TRUE(scanEnds(10s));
    EXPECT_EQ(state.published.session.tracks[3].mode, 4);
}

TEST_F(ScanOf20TracksTest, KeepsWhatIsKnownOfASessionThatIsStillTheSame) {
    bench.setTrackMap(numbers(20), 0);
    setColumn(state.published.session, &Track::name, {"Kick Drum", "Snare Top"});
    state.published.session.tracks[1].mute = true;
    scan.calibrateBanks(true);
    ASSERT_TRUE(scanEnds(10s));
    EXPECT_EQ(state.published.session.tracks[1].name, "Snare Top");
    EXPECT_TRUE(state.published.session.tracks[1].mute);
}

// A track has been inserted at the top: what was known of track 1 is now track 2's, if anybody's.
TEST_F(ScanOf20TracksTest, KeepsNothingOfASessionThatHasChanged) {
    bench.setTrackMap(numbers(20), 0);
    for (std::size_t i = 0; i < 20; ++i) {
        Track& track = state.published.session.tracks[i];
        track.name = "Full " + std::to_string(i + 1);
        track.color = RGBColor(0x112233);
        track.mute = i == 1;
        track.comment = "a note";
    }
    host.names.insert(host.names.begin(), "NEW");
    host.faders.push_back(0.5);
    host.show();
    bench.run(3s);
    scan.calibrateBanks(true);
    ASSERT_TRUE(scanEnds(60s));
    ASSERT_EQ(displaysOf(state.published.session), host.names);
    EXPECT_THAT(namesOf(state.published.session), IsEmpty());
    EXPECT_THAT(column(state.published.session, &Track::color), testing::Each(std::nullopt));
    EXPECT_THAT(column(state.published.session, &Track::mute), testing::Each(false));
    EXPECT_THAT(column(state.published.session, &Track::comment), testing::Each(""));
    EXPECT_THAT(hex(bench.parts().table.buildTrackRow(0)), testing::EndsWith("03 4E 45 57 00")); // "NEW", no comment
}

TEST_F(ScanOf20TracksTest, ReturnsToTheTopWhenTheStartIsNowhere) {
    host.scrollTo(5);
    bench.surfaceA.name(0, "mode"); // an automation mode, say, instead of the track's name
    bench.run(5s);
    scan.calibrateBanks(false);
    ASSERT_TRUE(scanEnds(10s));
    EXPECT_EQ(host.offset, 0);
    EXPECT_EQ(state.published.bankOffset, 0);
}

// ---- What the client is told

using ToldScanTest = OwnedModelTest;

TEST_F(ToldScanTest, ThePositionIsToldInTheEndThoughItIsTheSame) {
    bench.surfaceA.pingEverySecond();
    BankingHost host(bench, numbers(8));
    bench.setTrackMap(numbers(8), 0);
    bench.run(2s);
    sendNothing();
    markAll();
    bench.parts().calibration.calibrateBanks(true);
    ASSERT_TRUE(bench.state().published.calibrating());
    ASSERT_TRUE(world.runtime.runUntil([this] { return !bench.state().published.calibrating(); }, 8s));
    EXPECT_THAT(heard(0x16), ElementsAre(testing::EndsWith("01 16 00 00 00 08 08")));
}

TEST_F(ToldScanTest, ThePositionIsToldLastAsTheDisplaysShowIt) {
    bench.surfaceA.pingEverySecond();
    BankingHost host(bench, numbers(8));
    bench.setTrackMap(numbers(8), 0);
    bench.run(2s);
    sendNothing();
    bench.parts().calibration.calibrateBanks(true);
    ASSERT_TRUE(world.runtime.runUntil([this] { return bench.state().fullTableDirty; }, 8s));
    bench.state().published.bankOffset = 5;
    markAll();
    ASSERT_TRUE(world.runtime.runUntil([this] { return !bench.state().published.calibrating(); }, 8s));
    EXPECT_THAT(heard(0x16), ElementsAre(testing::EndsWith("01 16 00 00 00 08 08"), // with all that it decides
                                         testing::EndsWith("01 16 00 00 00 08 08")));
}

// ---- A map that does not fit in the end

class FailedScanTest : public ScanOf20TracksTest {
protected:
    // Renames every track during the way back.
    void scanInVain(const std::string& prefix) {
        EXPECT_TRUE(world.runtime.runUntil([this] { return !state.published.session.empty(); }, 20s));
        for (std::size_t track = 0; track < host.names.size(); ++track)
            host.names[track] = prefix + std::to_string(track);
        host.show();
        EXPECT_TRUE(scanEnds(20s));
    }
};

TEST_F(FailedScanTest, IsRepeatedTwoSecondsLater) {
    scan.calibrateBanks(false);
    scanInVain("a");
    EXPECT_EQ(bench.takeLines().back(), "Cannot determine bank position, rescanning…");
    EXPECT_EQ(state.published.bankOffset, -1);
    bench.run(1999ms);
    EXPECT_FALSE(state.published.calibrating());
    EXPECT_EQ(displaysOf(state.published.session), numbers(20));
    bench.run(1ms);
    EXPECT_TRUE(state.published.calibrating());
    EXPECT_THAT(displaysOf(state.published.session), IsEmpty());
    EXPECT_THAT(bench.takeLines(), ElementsAre(started));
    ASSERT_TRUE(scanEnds(20s));
    EXPECT_EQ(state.published.bankOffset, 12); // where the first scan had got to
    EXPECT_EQ(host.offset, 12);
    EXPECT_FALSE(state.scans.calibrationRetried);
}

TEST_F(FailedScanTest, IsRepeatedThoughThePingsHaveOnlyJustBegunAgain) {
    scan.calibrateBanks(false);
    scanInVain("a");
    bench.run(1s);
    state.presence.firstPingAt = world.runtime.now();
    bench.takeLines();
    bench.run(1s);
    EXPECT_THAT(bench.takeLines(), ElementsAre(started));
}

TEST_F(FailedScanTest, IsNotRepeatedWithoutProToolsWhichIsLogged) {
    scan.calibrateBanks(false);
    scanInVain("a");
    state.published.huiConnected = false;
    bench.takeLines();
    bench.run(2s);
    EXPECT_THAT(bench.takeLines(), ElementsAre("Scan: aborted (Pro Tools not connected)"));
}

TEST_F(FailedScanTest, LeavesTheMapToAWalkThatHasBegunMeanwhile) {
    scan.calibrateBanks(false);
    scanInVain("a");
    bench.run(1s);
    state.published.banksUsedBy = BankUser::walk;
    bench.run(2s);
    EXPECT_EQ(displaysOf(state.published.session), numbers(20));
    EXPECT_FALSE(state.published.calibrating());
}

TEST_F(FailedScanTest, LeavesTheMapToAScanThatTheClientAskedForMeanwhile) {
    scan.calibrateBanks(false);
    scanInVain("a");
    bench.run(1s);
    scan.calibrateBanks(true);
    bench.run(2s);
    EXPECT_EQ(displaysOf(state.published.session), numbers(20)); // the old one, until the new one is there
    ASSERT_TRUE(scanEnds(20s));
    EXPECT_EQ(displaysOf(state.published.session), host.names);
    bench.run(10s);
    EXPECT_FALSE(state.published.calibrating());
}

TEST_F(FailedScanTest, IsRepeatedOnce) {
    scan.calibrateBanks(false);
    scanInVain("a");
    bench.run(2s);
    scanInVain("b");
    EXPECT_EQ(bench.takeLines().back(), "Cannot determine bank position (map does not match the display)");
    bench.run(60s);
    EXPECT_THAT(bench.lines, IsEmpty());
    EXPECT_FALSE(state.published.calibrating());
}

TEST_F(FailedScanTest, MayBeRepeatedAgainAfterASuccess) {
    scan.calibrateBanks(false);
    scanInVain("a");
    bench.run(2s);
    ASSERT_TRUE(scanEnds(20s));
    bench.run(60s);
    state.published.session = {};
    scan.calibrateBanks(false);
    scanInVain("b");
    EXPECT_EQ(bench.takeLines().back(), "Cannot determine bank position, rescanning…");
}

// ---- It ends

TEST_F(ScanTest, EndsWithinAQuarterOfAnHourWhateverTheDisplaysDo) {
    BankingHost host(bench, numbers(8));
    const auto changes = world.runtime.repeatOnMain(
        50ms, [this, count = 0]() mutable { bench.surfaceA.name(0, std::to_string(1000 + count++ % 9000)); });
    bench.run(100ms);
    const TimePoint begin = world.runtime.now();
    scan.calibrateBanks(false);
    ASSERT_TRUE(scanEnds(900s));
    EXPECT_GT(world.runtime.now() - begin, 600s); // back and forward for 300 s each, and to the top
}

TEST_F(ScanTest, EndsThoughProToolsGoesAway) {
    BankingHost host(bench, numbers(99));
    bench.run(5s);
    scan.calibrateBanks(false);
    bench.run(3s);
    state.published.huiConnected = false;
    host.deaf = true;
    EXPECT_TRUE(scanEnds(10s));
}

} // namespace
} // namespace lumbrine
