#include "model/testing/model_test.h"
#include "model/testing/session_columns.h"

namespace lumbrine {
namespace {

class TrackTableTest : public OwnedModelTest {
protected:
    std::string row(std::size_t index) { return hex(table.buildTrackRow(index)); }
    ReceiverState& state = bench.state();
    TrackTable& table = bench.parts().table;
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

TEST_F(TrackTableTest, SendsAtMost2000RowsASecond) {
    bench.setTrackMap(std::vector<std::string>(20, "a"), 0);
    table.sendAllRowsTo(phone->key(), [] {});
    bench.run(4ms);
    table.sendAllRowsTo(phone->key(), [] {}); // begins no faster than the first went on
    bench.run(20ms);
    std::map<std::string, int> rowsAt;
    for (const std::string& row : bench.heardBy(*phone, 0x1B))
        ++rowsAt[row.substr(0, row.find(' '))];
    EXPECT_THAT(rowsAt, ElementsAre(testing::Pair("0ms", 8), testing::Pair("12ms", 8), testing::Pair("16ms", 4),
                                    testing::Pair("4ms", 8), testing::Pair("8ms", 8)));
}

TEST_F(TrackTableTest, SaysOnceWhenTheLastRowIsSent) {
    bench.setTrackMap(std::vector<std::string>(9, "a"), 0);
    int told = 0;
    table.sendAllRowsTo(phone->key(), [&] { ++told; });
    bench.run(3999us);
    EXPECT_EQ(told, 0);
    bench.run(1us);
    EXPECT_EQ(told, 1);
    bench.run(100ms);
    EXPECT_EQ(told, 1);
}

TEST_F(TrackTableTest, ARowHasTheValuesOfTheTimeWhenItIsSent) {
    bench.setTrackMap(std::vector<std::string>(130, "a"), 0);
    table.sendAllRowsTo(phone->key(), [] {});
    bench.setTrackMap(std::vector<std::string>(130, "b"), 0);
    bench.run(100ms);
    const Lines rows = bench.heardBy(*phone, 0x1B);
    ASSERT_THAT(rows, testing::SizeIs(130));
    const auto ofB = [](const std::string& row) { return row.ends_with(" 01 62 00"); };
    EXPECT_EQ(std::ranges::find_if(rows, ofB) - rows.begin(), TrackTable::rowsOfABatch);
}

TEST_F(TrackTableTest, TheRowsStopWhereTheMapEndsByThen) {
    bench.setTrackMap(std::vector<std::string>(200, "a"), 0);
    bool told = false;
    table.sendAllRowsTo(phone->key(), [&] { told = true; });
    bench.setTrackMap({"b"}, 0);
    bench.run(4ms);
    EXPECT_THAT(bench.heardBy(*phone, 0x1B), testing::SizeIs(TrackTable::rowsOfABatch));
    EXPECT_TRUE(told);
}

TEST_F(TrackTableTest, SendsOnlyTheRowsThatHaveChanged) {
    bench.setTrackMap({"a", "b", "c"}, 0);
    table.sendAllRowsTo(phone->key(), [] {});
    bench.run(4ms);
    bench.mark();
    phone->tape.clear();
    state.published.session.tracks[1].mute = true;
    table.sendChangedRows();
    EXPECT_THAT(heard(0x1B), ElementsAre("0ms " + row(1)));
    bench.run(4ms);
    table.sendChangedRows();
    EXPECT_THAT(heard(0x1B), IsEmpty());
}

TEST_F(TrackTableTest, SendsEveryRowToAnotherOwner) {
    bench.setTrackMap({"a", "b", "c"}, 0);
    table.sendAllRowsTo(phone->key(), [] {});
    const auto other = bench.phone("192.168.1.8");
    other->send({0x01, 0x25}); // takes over
    bench.run(4ms);
    table.sendChangedRows();
    bench.run(4ms);
    EXPECT_THAT(bench.heardBy(*other, 0x1B), testing::SizeIs(3));
}

TEST_F(TrackTableTest, SendsAFormerReaderNothingMore) {
    bench.setTrackMap(std::vector<std::string>(20, "a"), 0);
    bool told = false;
    table.sendAllRowsTo(phone->key(), [&] { told = true; });
    const auto other = bench.phone("192.168.1.8");
    other->send({0x01, 0x25}); // takes over
    settle();
    table.sendAllRowsTo(other->key(), [] {});
    bench.run(100ms);
    EXPECT_THAT(bench.heardBy(*phone, 0x1B), testing::SizeIs(TrackTable::rowsOfABatch));
    EXPECT_THAT(bench.heardBy(*other, 0x1B), testing::SizeIs(20));
    EXPECT_FALSE(told);
}

} // namespace
} // namespace lumbrine
