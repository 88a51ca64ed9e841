// Setting faders and automation modes of tracks anywhere in the session.
#include "model/testing/banking_host.h"
#include "model/testing/model_test.h"
#include "model/testing/session_columns.h"

#include <algorithm>
#include <optional>

namespace lumbrine {
namespace {

// Connected, 20 tracks, the first ones shown; no heartbeat. Track 8, say, shows "Tch" while its AUTO switch is held.
class GroupTest : public ModelTest {
protected:
    GroupTest() {
        bench.parts().surfaces.startSurfaces();
        host.show();
        host.modes = {"Read", "Read", "Read", "Read", "Read", "Read", "Read", "Read", "Tch", "Tch",
                      "Tch",  "Tch",  "Tch",  "Tch",  "Tch",  "Tch",  "Tch",  "Tch",  "Tch", "Tch"};
        bench.setTrackMap(numbers(20), 0);
        state.published.huiConnected = true;
        state.lastAutoPollAll = world.runtime.now() + 1h; // no probes
        bench.learnThatTheHostIsQuick();
        bench.run(2s);
        bench.mark();
        bench.takeLines();
    }

    bool ends(Duration limit = 20s) {
        world.runtime.runUntilIdle();
        return world.runtime.runUntil([this] { return state.published.banksUsedBy != BankUser::walk; }, limit);
    }

    // What surface A heard but for the bank buttons, without times.
    Lines acts() {
        Lines lines;
        bool bank = false;
        for (const std::string& line : bench.surfaceA.tape.takeBytes()) {
            if (line.starts_with("B0 0F")) bank = line == "B0 0F 0A";
            if (!bank) lines.push_back(line);
        }
        return lines;
    }

    GroupOperations& groups = bench.parts().groups;
    ReceiverState& state = bench.state();
    BankingHost host{bench, numbers(20)};
};

// ---- Faders

TEST_F(GroupTest, AFaderIsTouchedMovedAndReleasedAfter30Milliseconds) {
    groups.groupSetFaders({{2, 0.5}}, bench.asked());
    bench.run(30ms);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), ElementsAre("0ms B0 0F 02", "0ms B0 2F 40", "0ms B0 02 3F",
                                                           "0ms B0 22 7F", "30ms B0 0F 02", "30ms B0 2F 00"));
    EXPECT_TRUE(state.published.banksUsedBy == BankUser::walk); // on the way back
    ASSERT_TRUE(ends());
    EXPECT_THAT(bench.lines, ElementsAre("✓ Applied faders to 1 group tracks outside the window"));
}

TEST_F(GroupTest, FadersAreSetInSessionOrderAndTheViewIsPutBack) {
    groups.groupSetFaders({{13, 1.0}, {2, 0.0}}, bench.asked());
    ASSERT_TRUE(ends());
    EXPECT_THAT(acts(), ElementsAre("B0 0F 02", "B0 2F 40", "B0 02 00", "B0 22 00", "B0 0F 02", "B0 2F 00",
                                    // the fourth strip
                                    "B0 0F 03", "B0 2F 40", "B0 03 7F", "B0 23 7F", "B0 0F 03", "B0 2F 00"));
    EXPECT_EQ(host.offset, 0);
    EXPECT_EQ(state.published.bankOffset, 0);
    EXPECT_THAT(bench.lines, ElementsAre("✓ Applied faders to 2 group tracks outside the window"));
}

TEST_F(GroupTest, AMemberThatIsGivenTwiceGetsTheLaterValue) {
    groups.groupSetFaders({{2, 1.0}, {2, 0.0}}, bench.asked());
    ASSERT_TRUE(ends());
    EXPECT_THAT(acts(), ElementsAre("B0 0F 02", "B0 2F 40", "B0 02 00", "B0 22 00", "B0 0F 02", "B0 2F 00"));
    EXPECT_THAT(bench.lines, ElementsAre("✓ Applied faders to 1 group tracks outside the window"));
}

TEST_F(GroupTest, TheLastTrackOnTheSurfacesNeedsNoMoveAndTheOneBehindItDoes) {
    const auto bankPresses = [this] {
        const Lines heard = bench.heardOn(bench.surfaceA);
        return std::ranges::count_if(heard, [](const std::string& line) { return line.ends_with("B0 0F 0A"); });
    };
    groups.groupSetFaders({{7, 1.0}}, bench.asked());
    ASSERT_TRUE(ends());
    EXPECT_EQ(bankPresses(), 0);
    groups.groupSetFaders({{8, 1.0}}, bench.asked());
    ASSERT_TRUE(world.runtime.runUntil([this] { return host.offset == 5; }, 5s)); // on the fourth strip
    ASSERT_TRUE(ends());
    EXPECT_GT(bankPresses(), 0);
}

TEST_F(GroupTest, AMemberNearTheEndIsReachedWithAFullWindow) {
    groups.groupSetFaders({{19, 0.0}}, bench.asked());
    ASSERT_TRUE(ends());
    EXPECT_THAT(acts(), testing::Contains("B0 07 00")); // at offset 12
}

TEST_F(GroupTest, AMemberNearTheBeginningIsReachedFromTheTop) {
    host.scrollTo(12);
    bench.run(1s);
    groups.groupSetFaders({{1, 0.0}}, bench.asked());
    ASSERT_TRUE(ends());
    EXPECT_THAT(acts(), testing::Contains("B0 01 00"));
    EXPECT_EQ(host.offset, 12);
}

TEST_F(GroupTest, MembersOutsideTheSessionAreLeftOut) {
    groups.groupSetFaders({{-1, 0.5}, {3, 0.5}, {20, 0.5}}, bench.asked());
    ASSERT_TRUE(ends());
    EXPECT_THAT(acts(), testing::SizeIs(6));
    EXPECT_THAT(bench.takeLines(), ElementsAre("✓ Applied faders to 1 group tracks outside the window"));

    groups.groupSetFaders({{-1, 0.5}, {20, 0.5}}, bench.asked());
    groups.groupSetFaders({}, bench.asked());
    groups.groupSetAutoMode({20, 65535}, 2, bench.asked());
    bench.run(1s);
    EXPECT_THAT(acts(), IsEmpty());
    EXPECT_THAT(bench.lines, IsEmpty());
}

TEST_F(GroupTest, NothingHappensWithoutProToolsWhichIsLogged) {
    state.published.huiConnected = false;
    groups.groupSetFaders({{3, 0.5}}, bench.asked());
    groups.groupSetAutoMode({3}, 2, bench.asked());
    bench.run(1s);
    EXPECT_THAT(acts(), IsEmpty());
    EXPECT_THAT(bench.takeLines(), ElementsAre("✗ Dropped group faders: Pro Tools is not connected",
                                               "✗ Dropped group automation mode: Pro Tools is not connected"));
}

TEST_F(GroupTest, NothingHappensWithoutAMap) {
    bench.setTrackMap({}, -1);
    groups.groupSetFaders({{3, 0.5}}, bench.asked());
    groups.groupSetAutoMode({3}, 2, bench.asked());
    bench.run(1s);
    EXPECT_THAT(acts(), IsEmpty());
    EXPECT_THAT(bench.takeLines(), IsEmpty()); // no row was ever told
}

TEST_F(GroupTest, WhatWasAskedForWithoutProToolsIsNotDoneLater) {
    state.published.huiConnected = false;
    groups.groupSetFaders({{3, 0.5}}, bench.asked());
    bench.run(100ms);
    state.published.huiConnected = true;
    groups.groupSetFaders({{5, 0.5}}, bench.asked());
    ASSERT_TRUE(ends());
    EXPECT_THAT(acts(), ElementsAre("B0 0F 05", "B0 2F 40", "B0 05 3F", "B0 25 7F", "B0 0F 05", "B0 2F 00"));
}

TEST_F(GroupTest, MembersAreTheTracksThatTheRowsStoodForWhenTheyWereAskedFor) {
    for (Track& track : state.published.session.tracks)
        track.name = track.display;
    state.presence.lastHand = world.runtime.now(); // the walk waits
    groups.groupSetFaders({{3, 0.5}, {4, 0.5}}, bench.asked());
    bench.run(100ms);
    Lines names = host.names;
    names.erase(names.begin() + 3);
    names.insert(names.begin(), {"New1", "New2"});
    host.names = names;
    host.show();
    bench.setTrackMap(names, 0);
    for (Track& track : state.published.session.tracks)
        track.name = track.display;
    ++state.mapNumber;
    bench.run(1500ms);
    ASSERT_TRUE(ends());
    EXPECT_THAT(acts(), ElementsAre("B0 0F 05", "B0 2F 40", "B0 05 3F", "B0 25 7F", "B0 0F 05", "B0 2F 00"));
    EXPECT_THAT(bench.takeLines(), ElementsAre("✓ Applied faders to 1 of 2 group tracks outside the window"));
}

TEST_F(GroupTest, NothingHappensForAFormerOwnerThatWasShownNoRowsSince) {
    const Asked former{.owner = {.number = 1}, .at = world.runtime.now()};
    groups.groupSetFaders({{3, 0.5}}, former);
    groups.groupSetAutoMode({3}, 2, former);
    bench.run(1s);
    EXPECT_THAT(acts(), IsEmpty());
    EXPECT_THAT(bench.takeLines(), ElementsAre("✗ Dropped group faders: no track was shown yet",
                                               "✗ Dropped group automation mode: no track was shown yet"));
}

TEST_F(GroupTest, FadersMoveWhileTheTransportRuns) {
    state.transportPlaying = true;
    groups.groupSetFaders({{3, 0.5}}, bench.asked());
    ASSERT_TRUE(ends());
    EXPECT_THAT(acts(), testing::SizeIs(6));
}

TEST_F(GroupTest, ReturnsToAViewOfWhichOnlyTheNamesTellThePosition) {
    host.scrollTo(3);
    world.runtime.runUntilIdle();
    state.published.bankOffset = -1;
    groups.groupSetFaders({{15, 0.5}}, bench.asked());
    ASSERT_TRUE(ends());
    EXPECT_EQ(host.offset, 3);
    EXPECT_EQ(state.published.bankOffset, 3);
}

TEST_F(GroupTest, ReturnsToTheViewThatAValueCoveredWhenItBegan) {
    bench.surfaceA.name(2, "-6.0");
    bench.run(1200ms);
    ASSERT_EQ(state.published.bankOffset, -1);
    groups.groupSetFaders({{15, 0.5}}, bench.asked());
    bench.run(300ms);
    host.show();
    ASSERT_TRUE(ends());
    EXPECT_EQ(host.offset, 0);
}

TEST_F(GroupTest, ThePositionIsLookedForAgainInTheEnd) {
    groups.groupSetFaders({{2, 0.5}}, bench.asked());
    bench.run(100ms);
    ASSERT_TRUE(state.published.banksUsedBy == BankUser::walk);
    state.published.bankOffset = 5; // though the first tracks are shown
    ASSERT_TRUE(ends());
    EXPECT_EQ(state.published.bankOffset, 0);
}

TEST_F(GroupTest, StopsForAFormerOwnerAndReturnsTheView) {
    groups.groupSetFaders({{2, 0.5}, {12, 0.5}, {17, 0.5}}, bench.asked());
    bench.run(100ms);
    bench.parts().queue.newOwner({.number = 2});
    ASSERT_TRUE(ends());
    bench.run(3s);
    EXPECT_EQ(host.offset, 0);
    EXPECT_THAT(acts(), testing::SizeIs(6)); // the first alone
    EXPECT_THAT(bench.lines, ElementsAre("✗ Dropped group faders: another device has taken control"));
}

TEST_F(GroupTest, AMemberThatDoesNotComeIsLeftOut) {
    host.deaf = true;
    groups.groupSetFaders({{15, 0.5}}, bench.asked());
    ASSERT_TRUE(ends(5s));
    EXPECT_THAT(acts(), IsEmpty());
    EXPECT_THAT(bench.lines, ElementsAre("✓ Applied faders to 0 of 1 group tracks outside the window"));
}

TEST_F(GroupTest, WhatComesDuringAWalkIsDoneByOneWalkAfterItWithTheNewestValues) {
    groups.groupSetFaders({{13, 0.0}}, bench.asked());
    bench.run(50ms);
    groups.groupSetFaders({{14, 0.0}}, bench.asked());
    groups.groupSetFaders({{15, 0.0}, {14, 1.0}}, bench.asked());
    bench.run(20s);
    EXPECT_FALSE(state.published.banksUsedBy == BankUser::walk);
    EXPECT_THAT(acts(), testing::SizeIs(3 * 6));
    EXPECT_THAT(bench.lines, ElementsAre("✓ Applied faders to 1 group tracks outside the window",
                                         "✓ Applied faders to 2 group tracks outside the window"));
}

// ---- Automation modes

TEST_F(GroupTest, AModeIsPressedWhileTheStripsSwitchIsHeld) {
    groups.groupSetAutoMode({2}, 5, bench.asked());
    bench.run(260ms);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), ElementsAre("0ms B0 0F 02", "0ms B0 2F 44",     // hold
                                                           "50ms B0 0F 18", "50ms B0 2F 45",   // the mode's button
                                                           "110ms B0 0F 18", "110ms B0 2F 05", //
                                                           "260ms B0 0F 02", "260ms B0 2F 04"));
    EXPECT_EQ(state.published.strips[2].mode, 1);
    ASSERT_TRUE(ends());
    EXPECT_EQ(state.published.strips[2].mode, autoModeUnknown); // whatever the strip shows now is to be asked
    EXPECT_THAT(bench.lines, ElementsAre("✓ Applied automation mode to 1 group tracks"));
}

TEST_F(GroupTest, WhatTheDisplaysShowIsKeptForTheSession) {
    groups.groupSetAutoMode({13, 2, 13}, 5, bench.asked());
    ASSERT_TRUE(ends());
    ASSERT_THAT(column(state.published.session, &Track::mode), testing::SizeIs(20));
    EXPECT_EQ(state.published.session.tracks[2].mode, 1);
    EXPECT_EQ(state.published.session.tracks[13].mode, 2);
    EXPECT_EQ(std::ranges::count(column(state.published.session, &Track::mode), autoModeUnknown), 18);
    EXPECT_EQ(host.offset, 0);
    EXPECT_THAT(bench.lines, ElementsAre("✓ Applied automation mode to 2 group tracks")); // no track twice
}

TEST_F(GroupTest, AModeThatIsNotShownIsNotStored) {
    host.modes.clear();
    bench.state().published.session.surveyed = true;
    state.published.session.tracks[2].mode = 4;
    groups.groupSetAutoMode({2}, 5, bench.asked());
    ASSERT_TRUE(ends());
    EXPECT_EQ(state.published.session.tracks[2].mode, 4);
}

TEST_F(GroupTest, ThereAreSixModes) {
    groups.groupSetAutoMode({2}, 6, bench.asked());
    groups.groupSetAutoMode({2}, -1, bench.asked());
    bench.run(1s);
    EXPECT_THAT(acts(), IsEmpty());
    EXPECT_THAT(bench.lines, IsEmpty());
}

TEST_F(GroupTest, ModesAreLeftAloneWhileTheTransportRunsWhichIsLoggedOnceForARun) {
    for (bool* running : {&state.transportPlaying, &state.transportRecording}) {
        *running = true;
        groups.groupSetAutoMode({2}, 5, bench.asked());
        bench.run(1s);
        *running = false;
    }
    EXPECT_THAT(acts(), IsEmpty());
    EXPECT_THAT(bench.lines, ElementsAre("✗ Dropped group automation mode: playing or recording"));
}

TEST_F(GroupTest, TheModesShownAreAskedForInTheEnd) {
    state.lastAutoPollAll = distantPast;
    groups.groupSetAutoMode({2}, 5, bench.asked());
    ASSERT_TRUE(ends());
    acts();
    bench.run(1ms);
    EXPECT_THAT(acts(), ElementsAre("B0 0F 00", "B0 2F 44"));
}

TEST_F(GroupTest, StripsOfTheSecondSurfaceAreItsOwn) {
    state.published.winW = 16;
    bench.setTrackMap(numbers(16), 0);
    for (int strip = 0; strip < 8; ++strip)
        bench.surfaceB.name(strip, (strip < 1 ? "0" : "") + std::to_string(strip + 9) + "  ");
    world.runtime.runUntilIdle();
    groups.groupSetFaders({{11, 1.0}}, bench.asked());
    groups.groupSetAutoMode({11}, 2, bench.asked());
    bench.run(20s);
    EXPECT_THAT(acts(), IsEmpty());
    EXPECT_THAT(bench.surfaceB.tape.takeBytes(),
                ElementsAre("B0 0F 03", "B0 2F 40", "B0 03 7F", "B0 23 7F", "B0 0F 03", "B0 2F 00", //
                            "B0 0F 03", "B0 2F 44", "B0 0F 18", "B0 2F 42", "B0 0F 18", "B0 2F 02", "B0 0F 03",
                            "B0 2F 04"));
}

TEST(GroupInJapanese, TellsWhatWasDone) {
    ModelWorld world;
    ModelBench bench(world, {.japanese = true});
    bench.parts().surfaces.startSurfaces();
    bench.setTrackMap(numbers(8), 0);
    BankingHost host(bench, numbers(8));
    host.show();
    bench.state().published.huiConnected = true;
    bench.run(1s);
    bench.takeLines();
    bench.parts().groups.groupSetFaders({{1, 0.5}, {2, 0.5}}, bench.asked());
    bench.parts().groups.groupSetAutoMode({1, 2, 3}, 0, bench.asked());
    bench.run(20s);
    EXPECT_THAT(bench.lines, ElementsAre("✓ グループ窓外 2 本のフェーダーを反映しました",
                                         "✓ グループ 3 本にオートモードを適用しました"));
}

// ---- What the client is told

class ToldGroupTest : public OwnedModelTest {
protected:
    ToldGroupTest() {
        bench.surfaceA.ping();
        bench.run(1100ms);
        bench.state().published.huiConnected = true;
        bench.state().lastAutoPollAll = world.runtime.now() + 1h;
        host.emplace(bench, numbers(8));
        host->faders.assign(8, 0.5);
        host->show();
        bench.setTrackMap(numbers(8), 0);
        bench.run(10ms);
        markAll();
    }

    // All that is shown, as the last that is told.
    void expectToldInTheEnd() {
        ASSERT_TRUE(
            world.runtime.runUntil([this] { return !(bench.state().published.banksUsedBy == BankUser::walk); }, 1s));
        Lines expected{"16"};
        expected.insert(expected.end(), 8, "10");
        expected.push_back("13");
        expected.insert(expected.end(), 8, "12");
        expected.push_back("1C");
        EXPECT_EQ(lastTypesHeard(expected.size()), expected);
    }

    // The types of the last messages but for meters.
    Lines lastTypesHeard(std::size_t count) {
        settle();
        Lines types;
        for (const std::string& line : phone->tape.takeBytes())
            if (!line.starts_with("01 11")) types.push_back(line.substr(3, 2));
        types.erase(types.begin(), types.end() - static_cast<std::ptrdiff_t>(std::min(count, types.size())));
        return types;
    }

    std::optional<BankingHost> host;
};

TEST_F(ToldGroupTest, AWalkIsToldToTheClientWhenItIsOver) {
    bench.parts().groups.groupSetFaders({{1, 0.5}}, bench.asked());
    ASSERT_TRUE(world.runtime.runUntil([this] { return bench.state().published.banksUsedBy == BankUser::walk; }, 1s));
    bench.surfaceA.fader(1, 0.5); // the echo is not shown
    bench.run(1ms);
    EXPECT_THAT(heard(0x12), IsEmpty());
    expectToldInTheEnd();
}

TEST_F(ToldGroupTest, AWalkForModesIsToldLikewise) {
    bench.parts().groups.groupSetAutoMode({1}, 2, bench.asked());
    ASSERT_TRUE(world.runtime.runUntil([this] { return bench.state().published.banksUsedBy == BankUser::walk; }, 1s));
    expectToldInTheEnd();
}

class OwnedGroupTest : public OwnedModelTest {};

TEST_F(OwnedGroupTest, MembersThatTheSessionHasNoMoreAreLogged) {
    bench.setTrackMap(numbers(20), 0);
    bench.state().published.huiConnected = true;
    phone->send({0x01, 0x00}); // Hello: the rows are sent
    bench.run(300ms);
    bench.setTrackMap(numbers(8), 0);
    bench.takeLines();
    phone->send({0x01, 0x23, 0x01, 0x00, 0x09, 0x20, 0x00}); // GroupFaders: row 9
    settle();
    EXPECT_THAT(bench.takeLines(), ElementsAre("✗ Dropped group faders: the session has other tracks now"));
}

} // namespace
} // namespace lumbrine
