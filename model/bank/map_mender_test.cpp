// Following a track list that has changed.
#include "model/testing/model_test.h"
#include "model/testing/session_columns.h"

namespace lumbrine {
namespace {

class MapMenderTest : public OwnedModelTest {
protected:
    MapMenderTest() {
        bench.setTrackMap({"A", "B", "C", "D"}, 0);
        show({"A", "B", "C", "D"});
        list({"A", "B", "C", "D"});
        setColumn(state.published.session, &Track::mode, {1, 2, 3, 4});
        bench.takeLines();
    }

    void show(const std::vector<std::string>& names) {
        for (std::size_t i = 0; i < stripCount; ++i)
            state.published.strips[i].name = i < names.size() ? names[i] : "";
    }

    // What the scripting service says, with the ids that the tracks had first.
    void list(const std::vector<std::string>& names, std::map<std::string, std::string> ids = {}) {
        TrackMetadata::TrackList tracks;
        for (const std::string& name : names)
            tracks.push_back({.name = name, .id = ids.contains(name) ? ids[name] : "id of " + name});
        metadata.takeList(std::move(tracks));
    }

    std::vector<std::uint8_t> modes() { return column(state.published.session, &Track::mode); }
    std::vector<std::string> displays() { return displaysOf(state.published.session); }

    TrackMetadata& metadata = bench.parts().metadata;
    MapMender& mender = bench.parts().mender;
    ReceiverState& state = bench.state();
};

TEST_F(MapMenderTest, ATrackThatIsAddedWhereItIsShownIsLearnedAtOnce) {
    list({"A", "New", "B", "C", "D"});
    show({"A", "New", "B", "C", "D"});
    mender.watchTrackList();
    EXPECT_THAT(displays(), ElementsAre("A", "New", "B", "C", "D"));
    EXPECT_THAT(modes(), ElementsAre(1, autoModeUnknown, 2, 3, 4));
    EXPECT_EQ(state.published.bankOffset, 0);
    EXPECT_THAT(bench.takeLines(), testing::Contains("✓ Followed the track list: 5 tracks"));
}

TEST_F(MapMenderTest, ATrackThatIsAddedElsewhereIsLearnedWhenItIsShown) {
    std::vector<std::string> names{"A", "B", "C", "D", "E", "F", "G", "H", "I", "J"};
    bench.setTrackMap(names, 0);
    show({"A", "B", "C", "D", "E", "F", "G", "H"});
    list(names);
    names.insert(names.begin() + 9, "New");
    list(names);
    mender.watchTrackList();
    bench.run(2399ms);
    mender.watchTrackList();
    EXPECT_EQ(state.published.session.size(), 10U);
    bench.run(1ms);
    mender.watchTrackList();
    EXPECT_EQ(state.published.session.size(), 11U);
    EXPECT_EQ(state.published.bankOffset, 0);

    show({"D", "E", "F", "G", "H", "I", "New", "J"});
    bench.parts().bankMap.relocalize();
    EXPECT_EQ(state.published.bankOffset, 3);
    EXPECT_EQ(displays()[9], "New");
}

TEST_F(MapMenderTest, ARemovedTrackIsTakenOut) {
    list({"A", "C", "D"});
    show({"A", "C", "D"});
    mender.watchTrackList();
    EXPECT_THAT(displays(), ElementsAre("A", "C", "D"));
    EXPECT_THAT(modes(), ElementsAre(1, 3, 4));
}

TEST_F(MapMenderTest, AMovedTrackKeepsWhatIsKnownOfIt) {
    list({"B", "C", "A", "D"});
    show({"B", "C", "A", "D"});
    mender.watchTrackList();
    EXPECT_THAT(displays(), ElementsAre("B", "C", "A", "D"));
    EXPECT_THAT(modes(), ElementsAre(2, 3, 1, 4));
    EXPECT_EQ(state.published.bankOffset, 0);
}

TEST_F(MapMenderTest, ARenamedTrackIsFoundByItsNewName) {
    list({"A", "Bass", "C", "D"}, {{"Bass", "id of B"}});
    show({"A", "Bass", "C", "D"});
    bench.parts().bankMap.relocalize();
    EXPECT_EQ(state.published.bankOffset, 0);
    EXPECT_THAT(displays(), ElementsAre("A", "Bass", "C", "D"));
    EXPECT_THAT(modes(), ElementsAre(1, 2, 3, 4));
}

TEST_F(MapMenderTest, TheSurfacesCountWhereTheyDisagree) {
    list({"A", "C", "D"}); // B is hidden in one window only
    mender.watchTrackList();
    bench.run(10s);
    mender.watchTrackList();
    EXPECT_THAT(displays(), ElementsAre("A", "B", "C", "D"));
}

TEST_F(MapMenderTest, AnotherSessionIsNotAChange) {
    list({"A", "K", "L", "M", "N"});
    show({"A", "K", "L", "M", "N"});
    mender.watchTrackList();
    EXPECT_EQ(state.published.session.size(), 4U);
}

TEST_F(MapMenderTest, AnotherSessionIsScannedOnceItsListIsSettled) {
    list({"A", "B", "C"}, {{"A", "1"}, {"B", "2"}, {"C", "3"}}); // of the same names
    mender.watchTrackList();
    bench.run(2399ms);
    mender.watchTrackList();
    EXPECT_FALSE(state.published.calibrating());
    bench.run(1ms);
    state.published.huiConnected = true;
    mender.watchTrackList();
    EXPECT_TRUE(state.published.calibrating());
}

TEST_F(MapMenderTest, AnUnsureSessionIsScannedAgainWithAListThatTheScanDidNotHave) {
    state.published.session.sure = false;
    mender.watchTrackList();
    bench.run(2400ms);
    state.published.huiConnected = true;
    mender.watchTrackList();
    EXPECT_TRUE(state.published.calibrating());
}

TEST_F(MapMenderTest, AMapOfAnotherCountIsScannedAgainOnceWithTheListThatTheScanDidNotHave) {
    state.published.session.listed = false;
    list({"A", "B", "C", "D", "E", "F", "G", "H", "I", "J"});
    mender.watchTrackList();
    bench.run(2400ms);
    state.published.huiConnected = true;
    mender.watchTrackList();
    EXPECT_TRUE(state.published.calibrating());
}

TEST_F(MapMenderTest, NothingIsMendedWhileAJobHasTheBanks) {
    list({"A", "C", "D"});
    show({"A", "C", "D"});
    state.published.banksUsedBy = BankUser::seek;
    mender.watchTrackList();
    EXPECT_EQ(state.published.session.size(), 4U);
}

} // namespace
} // namespace lumbrine
