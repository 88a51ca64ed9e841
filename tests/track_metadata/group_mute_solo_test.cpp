// Muting and soloing members of a group by name.
#include "model/testing/session_columns.h"
#include "remote/command_builder.h"
#include "tests/track_metadata/metadata_test.h"

#include <algorithm>

namespace lumbrine {
namespace {

using Members = std::vector<remote::Member>;

class GroupMuteSoloTest : public MetadataTest {
protected:
    GroupMuteSoloTest() {
        setColumn(published.session, &Track::name, {"Kick Drum", "Lead Vocals", ""});
        serve(threeTracks);
    }

    void set(const std::vector<int>& members, bool isSolo, bool enabled) {
        bench.parts().groupSwitches.groupSetMuteSolo(members, isSolo, enabled);
        world.runtime.runUntilIdle();
    }
};

TEST_F(GroupMuteSoloTest, MutesByFullNameInTheGroupsOrder) {
    set({1, 0}, false, true);
    EXPECT_THAT(argumentsOf(muteCommand), ElementsAre(R"({"enabled":true,"track_names":["Lead Vocals","Kick Drum"]})"));
    EXPECT_EQ(bench.lines[0], "✓ Group: mute ON for 2 tracks");
}

TEST_F(GroupMuteSoloTest, EachCombinationHasItsCommandAndItsLine) {
    set({0}, false, false);
    EXPECT_THAT(argumentsOf(muteCommand), ElementsAre(R"({"enabled":false,"track_names":["Kick Drum"]})"));
    EXPECT_EQ(bench.takeLines()[0], "✓ Group: mute OFF for 1 tracks");
    set({0}, true, true);
    EXPECT_EQ(bench.takeLines()[0], "✓ Group: solo ON for 1 tracks");
    set({0}, true, false);
    EXPECT_EQ(bench.takeLines()[0], "✓ Group: solo OFF for 1 tracks");
    EXPECT_EQ(argumentsOf(soloCommand).size(), 2U);
}

TEST_F(GroupMuteSoloTest, LeavesOutMembersWithoutAFullName) {
    set({2, 7, -1, 0}, true, true);
    EXPECT_THAT(argumentsOf(soloCommand), ElementsAre(R"({"enabled":true,"track_names":["Kick Drum"]})"));
    EXPECT_EQ(bench.lines[0], "✓ Group: solo ON for 1 tracks");
}

TEST_F(GroupMuteSoloTest, DoesNothingWhenNobodyIsLeft) {
    set({2, 9}, false, true);
    set({}, true, true);
    EXPECT_THAT(service.requests, IsEmpty());
    EXPECT_THAT(bench.lines, IsEmpty());
}

TEST_F(GroupMuteSoloTest, ReadsTheListAgainAfterwards) {
    set({0}, false, true);
    ASSERT_FALSE(service.requests.empty());
    EXPECT_EQ(service.requests.back().command, trackListCommand);
}

TEST_F(GroupMuteSoloTest, FailureIsLoggedOnceAndNothingElse) {
    bench.streams.stopListening(31416);
    set({0, 1}, false, true);
    set({0, 1}, true, true);
    EXPECT_THAT(bench.lines, ElementsAre("Track colors: unavailable (Cannot reach Pro Tools' PTSL (not running or "
                                         "disabled)) → names are read from the screen, no colors shown"));
    EXPECT_THAT(column(bench.state().published.session, &Track::mute), testing::Each(false));
}

TEST_F(GroupMuteSoloTest, NeverMovesTheSurfaces) {
    service.answer = [](service::ScriptedService::Call&) {}; // keeps the queue busy
    bench.parts().groupSwitches.groupSetMuteSolo({0}, false, true);
    bench.run(1s);
    EXPECT_FALSE(bench.state().published.banksUsedBy == BankUser::walk);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), IsEmpty());
}

// The folder that holds the kick has been closed: the client's row 0 is now the lead vocals'.
TEST_F(GroupMuteSoloTest, MutesTheTrackThatIsThereAfterARescan) {
    refresh();
    bench.setTrackMap({"LdVo", "BkVo"}, 0);
    refresh(); // still of three tracks
    set({0}, false, true);
    EXPECT_THAT(argumentsOf(muteCommand), IsEmpty()); // no name is known, so no track is muted
    EXPECT_THAT(hex(bench.parts().table.buildTrackRow(0)), testing::EndsWith("04 4C 64 56 6F 00")); // "LdVo"
}

class JapaneseGroupMuteSoloTest : public JapaneseMetadataTest {};

TEST_F(JapaneseGroupMuteSoloTest, IsLoggedInJapanese) {
    setColumn(published.session, &Track::name, {"Kick Drum", "Lead Vocals", "Backing Vocals"});
    bench.parts().groupSwitches.groupSetMuteSolo({0, 1}, false, true);
    bench.parts().groupSwitches.groupSetMuteSolo({2}, true, false);
    world.runtime.runUntilIdle();
    EXPECT_THAT(bench.lines, testing::Contains("✓ グループ 2 本をミュートON"));
    EXPECT_THAT(bench.lines, testing::Contains("✓ グループ 1 本をソロOFF"));
}

class GroupMuteDatagramTest : public OwnedModelTest {
protected:
    service::EnvelopeService service{bench.streams};
};

TEST_F(GroupMuteDatagramTest, MutesTheSessionTracksThatTheClientNames) {
    Lines names(300);
    for (std::size_t i = 0; i < names.size(); ++i)
        names[i] = "T" + std::to_string(i);
    bench.setTrackMap(names, 0);
    setColumn(bench.state().published.session, &Track::name, {names.begin(), names.end()});
    phone->send(remote::groupMuteCommand(true, Members{5, 256}));
    settle();
    ASSERT_GE(service.requests.size(), 2U);
    EXPECT_EQ(service.requests[1].command, 85U);
    EXPECT_EQ(service.requests[1].json, R"({"enabled":true,"track_names":["T5","T256"]})");
}

TEST_F(GroupMuteDatagramTest, SolosAndUnmutesByTheOtherMessagesOfItsKind) {
    bench.setTrackMap({"Kick", "LdVo"}, 0);
    setColumn(bench.state().published.session, &Track::name, {"Kick Drum", "Lead Vocals"});
    const auto lastSwitch = [this] {
        settle();
        const auto isSwitch = [](const service::Request& request) { return request.command > 80; };
        const auto last = std::ranges::find_if(service.requests.rbegin(), service.requests.rend(), isSwitch);
        return last == service.requests.rend() ? "" : std::to_string(last->command) + " " + last->json;
    };
    phone->send(remote::groupSoloCommand(true, Members{1}));
    EXPECT_EQ(lastSwitch(), R"(86 {"enabled":true,"track_names":["Lead Vocals"]})");
    phone->send(remote::groupSoloCommand(false, Members{1}));
    EXPECT_EQ(lastSwitch(), R"(86 {"enabled":false,"track_names":["Lead Vocals"]})");
    phone->send(remote::groupMuteCommand(false, Members{0}));
    EXPECT_EQ(lastSwitch(), R"(85 {"enabled":false,"track_names":["Kick Drum"]})");
}

TEST_F(GroupMuteDatagramTest, IgnoresOneThatIsTooShort) {
    bench.setTrackMap({"Kick"}, 0);
    setColumn(bench.state().published.session, &Track::name, {"Kick Drum"});
    phone->send({0x01, 0x21, 0x01, 0x02, 0x00, 0x00, 0x00});
    settle();
    EXPECT_THAT(service.requests, IsEmpty());
}

} // namespace
} // namespace lumbrine
