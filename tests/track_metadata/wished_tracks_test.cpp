// A wish is for the tracks that the client was shown, whatever becomes of the session before it is carried out.
#include "model/testing/session_columns.h"
#include "tests/track_metadata/metadata_test.h"

namespace lumbrine {
namespace {

class WishedTracksTest : public WishTest {
protected:
    WishedTracksTest() {
        list(R"({"id":"a","name":"Kick Drum"},{"id":"b","name":"Lead Vocals"},{"id":"c","name":"Bass"})");
    }

    void list(const std::string& tracks) {
        serve(tracks);
        refresh();
        service.requests.clear();
        bench.lines.clear();
    }

    // A wish for the members that has to wait because the host is busy.
    void askOf(const std::vector<int>& members) {
        tell();
        refuse(muteCommand, 138);
        bench.parts().wishes.setGroup(TrackSwitch::mute, members, true, origin());
        world.runtime.runUntilIdle();
        service.answers.erase(muteCommand);
    }

    Lines setters() {
        service.requests.clear();
        bench.run(250ms);
        return takeSetters();
    }
};

TEST_F(WishedTracksTest, AreFollowedByTheirIds) {
    askOf({0});
    list(R"({"id":"b","name":"Kick Drum"},{"id":"a","name":"Kick In"},{"id":"c","name":"Bass"})");
    EXPECT_THAT(setters(), ElementsAre(R"(85 {"enabled":true,"track_names":["Kick In"]})"));
}

TEST_F(WishedTracksTest, AreFollowedToAnotherMap) {
    askOf({1});
    bench.setTrackMap({"LdVo", "Bass"}, 0); // the kick's folder has been closed
    EXPECT_THAT(setters(), ElementsAre(R"(85 {"enabled":true,"track_names":["Lead Vocals"]})"));
}

TEST_F(WishedTracksTest, AreNotReplacedByOthersOfTheirNames) {
    askOf({0});
    list(R"({"id":"d","name":"Kick Drum"},{"id":"b","name":"Lead Vocals"},{"id":"c","name":"Bass"})");
    EXPECT_THAT(setters(), IsEmpty());
    EXPECT_THAT(bench.lines, ElementsAre("✗ Dropped group mute: the track is gone"));
}

// The client's row says of the new track what it said of the old one, so it is not sent again.
TEST_F(WishedTracksTest, AreTheOthersOfTheirNamesOnceTheClientIsUpToDate) {
    tell();
    list(R"({"id":"d","name":"Kick Drum"},{"id":"b","name":"Lead Vocals"},{"id":"c","name":"Bass"})");
    askOf({0});
    EXPECT_THAT(setters(), ElementsAre(R"(85 {"enabled":true,"track_names":["Kick Drum"]})"));
}

TEST_F(WishedTracksTest, AreReachedWithoutThoseThatAreGone) {
    askOf({0, 1});
    list(R"({"id":"b","name":"Lead Vocals"},{"id":"c","name":"Bass"})"); // of another number than the map
    EXPECT_THAT(setters(), ElementsAre(R"(85 {"enabled":true,"track_names":["Lead Vocals"]})"));
    EXPECT_THAT(bench.lines, testing::Contains("✓ Group: mute ON for 1 of 2 tracks"));
}

// ---- In versions of the service without ids

TEST_F(WishedTracksTest, WithoutIdsKeepTheirNamesAndPlaces) {
    list(R"({"name":"Kick Drum"},{"name":"Lead Vocals"},{"name":"Bass"})");
    askOf({0, 1});
    list(R"({"name":"Kick Drum"},{"name":"Bass"},{"name":"Lead Vocals"})");
    EXPECT_THAT(setters(), ElementsAre(R"(85 {"enabled":true,"track_names":["Kick Drum"]})"));
}

TEST_F(WishedTracksTest, WithoutIdsAreNoOthersOfTheirNames) {
    list(R"({"name":"Kick Drum"},{"name":"Lead Vocals"},{"name":"Bass"})");
    askOf({0});
    list(R"({"name":"Lead Vocals"},{"name":"Kick Drum"},{"name":"Bass"})");
    EXPECT_THAT(setters(), IsEmpty());
}

} // namespace
} // namespace lumbrine
