// Muting and soloing members of a group by name: what is asked of the service, and what is logged.
#include "model/testing/session_columns.h"
#include "remote/command_builder.h"
#include "tests/track_metadata/metadata_test.h"

#include <algorithm>

namespace lumbrine {
namespace {

using Members = std::vector<remote::Member>;

class GroupWishesTest : public WishTest {
protected:
    GroupWishesTest() {
        setColumn(published.session, &Track::name, {"Kick Drum", "Lead Vocals", ""});
        serve(threeTracks);
        tell();
    }

    void set(const std::vector<int>& members, bool isSolo, bool enabled) {
        bench.parts().wishes.setGroup(isSolo ? TrackSwitch::solo : TrackSwitch::mute, members, enabled, origin());
        world.runtime.runUntilIdle();
    }
};

TEST_F(GroupWishesTest, MutesByFullNameInTheGroupsOrder) {
    set({1, 0}, false, true);
    EXPECT_THAT(argumentsOf(muteCommand), ElementsAre(R"({"enabled":true,"track_names":["Lead Vocals","Kick Drum"]})"));
    EXPECT_EQ(bench.lines[0], "✓ Group: mute ON for 2 tracks");
}

TEST_F(GroupWishesTest, EachCombinationHasItsCommandAndItsLine) {
    set({0}, false, false);
    EXPECT_THAT(argumentsOf(muteCommand), ElementsAre(R"({"enabled":false,"track_names":["Kick Drum"]})"));
    EXPECT_EQ(bench.takeLines()[0], "✓ Group: mute OFF for 1 tracks");
    set({0}, true, true);
    EXPECT_EQ(bench.takeLines()[0], "✓ Group: solo ON for 1 tracks");
    set({0}, true, false);
    EXPECT_EQ(bench.takeLines()[0], "✓ Group: solo OFF for 1 tracks");
    EXPECT_EQ(argumentsOf(soloCommand).size(), 2U);
}

TEST_F(GroupWishesTest, TellsHowManyMembersWereReached) {
    set({2, 7, -1, 0, 0}, true, true);
    EXPECT_THAT(argumentsOf(soloCommand), ElementsAre(R"({"enabled":true,"track_names":["Kick Drum"]})"));
    EXPECT_EQ(bench.lines[0], "✓ Group: solo ON for 1 of 4 tracks");
}

// It may still show another session.
TEST_F(GroupWishesTest, ByAFormerOwnerThatHasBeenShownNoRowsSinceAreDropped) {
    const auto other = bench.phone("192.168.1.8");
    for (auto* each : {other.get(), phone.get(), other.get()})
        each->send(remote::takeOverCommand());
    other->send(remote::groupMuteCommand(true, Members{0}));
    world.runtime.runUntilIdle();
    EXPECT_THAT(service.requests, IsEmpty());
    EXPECT_THAT(bench.lines, testing::Contains("✗ Dropped group mute: no track was shown yet"));
}

TEST_F(GroupWishesTest, TellsThatNobodyCanBeReached) {
    set({2, 9}, false, true);
    set({}, true, true);
    EXPECT_THAT(service.requests, IsEmpty());
    EXPECT_THAT(bench.lines, ElementsAre("✗ Dropped group mute: the track's full name is not known"));
}

// The service refuses a command for several tracks as a whole.
TEST_F(GroupWishesTest, ReachesTheOthersWhereOneTrackCannotBeMuted) {
    setColumn(published.session, &Track::name, {"Kick Drum", "Picture", "Lead Vocals"});
    serve(R"({"name":"Kick Drum"},{"name":"Picture"},{"name":"Lead Vocals"})");
    tell();
    service.answers[muteCommand] = [](const service::Request& request) {
        return request.json.find("Picture") == std::string::npos
                   ? service::reply("{}")
                   : service::failure(R"({"errors":[{"command_error_type":130}]})");
    };
    set({0, 1, 2}, false, true);
    EXPECT_THAT(argumentsOf(muteCommand),
                ElementsAre(testing::HasSubstr(R"(["Kick Drum","Picture","Lead Vocals"])"),
                            testing::HasSubstr(R"(["Kick Drum"])"), testing::HasSubstr(R"(["Picture","Lead Vocals"])"),
                            testing::HasSubstr(R"(["Picture"])"), testing::HasSubstr(R"(["Lead Vocals"])")));
    EXPECT_EQ(bench.takeLines()[0], "✓ Group: mute ON for 2 of 3 tracks");
    set({1}, false, true);
    EXPECT_EQ(bench.takeLines()[0], "✗ Dropped group mute: Pro Tools refused it");
}

TEST_F(GroupWishesTest, ReadsTheListAgainAfterwards) {
    set({0}, false, true);
    ASSERT_FALSE(service.requests.empty());
    EXPECT_EQ(service.requests.back().command, trackListCommand);
}

TEST_F(GroupWishesTest, FailureIsLoggedAndNothingElse) {
    bench.streams.stopListening(31416);
    set({0, 1}, false, true);
    set({0, 1}, true, true);
    bench.run(3s);
    EXPECT_THAT(bench.lines, ElementsAre("✗ Dropped group mute: Pro Tools did not answer",
                                         "✗ Dropped group solo: Pro Tools did not answer"));
    EXPECT_THAT(column(bench.state().published.session, &Track::mute), testing::Each(false));
}

TEST_F(GroupWishesTest, NeverMovesTheSurfaces) {
    service.answer = [](service::ScriptedService::Call&) {}; // keeps the queue busy
    bench.parts().wishes.setGroup(TrackSwitch::mute, {0}, true, origin());
    bench.run(1s);
    EXPECT_FALSE(bench.state().published.banksUsedBy == BankUser::walk);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), IsEmpty());
}

// The folder that holds the kick has been closed: row 0 is now the lead vocals'.
TEST_F(GroupWishesTest, MutesTheTrackThatTheClientWasShownInTheRow) {
    refresh();
    tell();
    bench.setTrackMap({"LdVo", "BkVo"}, 0);
    refresh(); // still of three tracks
    set({0}, false, true);
    EXPECT_THAT(argumentsOf(muteCommand), ElementsAre(R"({"enabled":true,"track_names":["Kick Drum"]})"));
    service.requests.clear();
    tell();
    set({0}, false, true);
    EXPECT_THAT(argumentsOf(muteCommand), IsEmpty()); // no name is known, so no track is muted
    EXPECT_THAT(hex(bench.parts().table.buildTrackRow(0)), testing::EndsWith("04 4C 64 56 6F 00")); // "LdVo"
}

class JapaneseGroupWishesTest : public WishTest {
protected:
    JapaneseGroupWishesTest() : WishTest(true) {}
};

TEST_F(JapaneseGroupWishesTest, IsLoggedInJapanese) {
    setColumn(published.session, &Track::name, {"Kick Drum", "Lead Vocals", "Backing Vocals"});
    tell();
    const auto set = [this](TrackSwitch which, const std::vector<int>& members, bool enabled) {
        bench.parts().wishes.setGroup(which, members, enabled, origin());
        world.runtime.runUntilIdle();
    };
    set(TrackSwitch::mute, {0, 1}, true);
    set(TrackSwitch::solo, {2}, false);
    set(TrackSwitch::mute, {1, 5, 6}, false);
    set(TrackSwitch::solo, {6}, false);
    EXPECT_THAT(bench.lines, testing::Contains("✓ グループ 2 本をミュートON"));
    EXPECT_THAT(bench.lines, testing::Contains("✓ グループ 3 本中 1 本をミュートOFF"));
    EXPECT_THAT(bench.lines, testing::Contains("✗ グループのソロを中止（トラックがまだ表示されていないため）"));
    EXPECT_THAT(bench.lines, testing::Contains("✓ グループ 1 本をソロOFF"));
}

class GroupMuteDatagramTest : public OwnedModelTest {
protected:
    void tell() {
        bench.parts().table.sendChangedRows();
        bench.run(200ms); // 2,000 rows a second
    }

    service::EnvelopeService service{bench.streams};
};

TEST_F(GroupMuteDatagramTest, MutesTheSessionTracksThatTheClientNames) {
    Lines names(300);
    for (std::size_t i = 0; i < names.size(); ++i)
        names[i] = "T" + std::to_string(i);
    bench.setTrackMap(names, 0);
    setColumn(bench.state().published.session, &Track::name, {names.begin(), names.end()});
    tell();
    phone->send(remote::groupMuteCommand(true, Members{5, 256}));
    settle();
    ASSERT_GE(service.requests.size(), 2U);
    EXPECT_EQ(service.requests[1].command, 85U);
    EXPECT_EQ(service.requests[1].json, R"({"enabled":true,"track_names":["T5","T256"]})");
}

TEST_F(GroupMuteDatagramTest, SolosAndUnmutesByTheOtherMessagesOfItsKind) {
    bench.setTrackMap({"Kick", "LdVo"}, 0);
    setColumn(bench.state().published.session, &Track::name, {"Kick Drum", "Lead Vocals"});
    tell();
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
