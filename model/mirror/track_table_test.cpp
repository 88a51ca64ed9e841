#include "model/testing/model_test.h"
#include "model/testing/session_columns.h"

namespace lumbrine {
namespace {

class TrackTableTest : public OwnedModelTest {
protected:
    std::string row(std::size_t index) { return hex(bench.parts().table.buildTrackRow(index)); }
    ReceiverState& state = bench.state();
};

TEST_F(TrackTableTest, ARowTellsEverythingOfATrack) {
    bench.setTrackMap({"Kck", "Snr"}, 0);
    setColumn(state.published.session, &Track::name, {"Kick", "Snare"});
    setColumn(state.published.session, &Track::color, {0x112233, 0x445566});
    setColumn(state.published.session, &Track::inputMonitor, {false, true});
    state.published.session.tracks[1].fader = 1.0;
    setColumn(state.published.session, &Track::mute, {false, true});
    setColumn(state.published.session, &Track::solo, {false, true});
    setColumn(state.published.session, &Track::record, {false, true});
    setColumn(state.published.session, &Track::select, {false, true});
    setColumn(state.published.session, &Track::comment, {"", "tune"});
    EXPECT_EQ(row(1), "01 1B 00 01 01 3F FF 01 01 01 01 44 55 66 01 01 05 53 6E 61 72 65 04 74 75 6E 65");
}

TEST_F(TrackTableTest, ARowIsNeutralWhereNothingIsKnown) {
    bench.setTrackMap({"Kck", "Snr"}, 0);
    EXPECT_EQ(row(1), "01 1B 00 01 00 00 00 00 00 00 00 00 00 00 00 00 03 53 6E 72 00");
}

TEST_F(TrackTableTest, ATrackWithoutFullNameHasItsShortOne) {
    bench.setTrackMap({"Kck", "Snr"}, 0);
    setColumn(state.published.session, &Track::name, {"Kick"});
    EXPECT_THAT(row(0), testing::EndsWith("04 4B 69 63 6B 00"));
    EXPECT_THAT(row(1), testing::EndsWith("03 53 6E 72 00"));
}

TEST_F(TrackTableTest, AllRowsGoToTheOwner) {
    bench.setTrackMap({"a", "b", "c"}, 0);
    bench.parts().table.broadcastAllRows();
    EXPECT_THAT(heard(0x1B), testing::SizeIs(3));
}

TEST_F(TrackTableTest, TheRowsOfALongSessionLeaveRoomForOtherWork) {
    bench.setTrackMap(std::vector<std::string>(130, "a"), 0);
    bench.parts().table.broadcastAllRows();
    world.runtime.postMain([this] { bench.setTrackMap(std::vector<std::string>(130, "b"), 0); });
    const Lines rows = heard(0x1B);
    ASSERT_THAT(rows, testing::SizeIs(130));
    const auto ofB = [](const std::string& row) { return row.ends_with(" 01 62 00"); };
    EXPECT_EQ(std::ranges::find_if(rows, ofB) - rows.begin(), 128); // the second 64 were waiting before it
}

TEST_F(TrackTableTest, TheRowsStopWhereTheMapEndsByThen) {
    bench.setTrackMap(std::vector<std::string>(200, "a"), 0);
    bool told = false;
    bench.parts().table.sendAllRowsTo(phone->key(), [&] { told = true; });
    EXPECT_FALSE(told);
    bench.setTrackMap({"b"}, 0);
    EXPECT_THAT(heard(0x1B), testing::SizeIs(64));
    EXPECT_TRUE(told);
}

} // namespace
} // namespace lumbrine
