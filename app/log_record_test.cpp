#include "app/log_record.h"

namespace lumbrine {
namespace {

using testing::ElementsAre;

std::vector<std::string> linesOf(const LogRecord& record) {
    std::vector<std::string> lines;
    for (const LogRow& row : record.rows())
        lines.push_back(row.line);
    return lines;
}

std::string ping(int number, const std::string& surface = "") {
    return surface + "♥ ping #" + std::to_string(number) + " received → replied (connection alive)";
}

TEST(LogRecord, ShowsEachLineWithItsTime) {
    LogRecord record;
    record.add("14:00:00", "✓ one");
    record.add("14:00:01", "two");
    EXPECT_THAT(record.rows(), ElementsAre(LogRow{1, "14:00:00", "✓ one"}, LogRow{2, "14:00:01", "two"}));
    EXPECT_EQ(record.text(), "14:00:00  ✓ one\n14:00:01  two\n");
}

TEST(LogRecord, KeepsFailuresAndWarningsInAListOfTheirOwn) {
    LogRecord record;
    record.add("14:00:00", "✗ failed");
    for (std::size_t i = 0; i < LogRecord::mostRows; ++i)
        record.add("14:00:01", "→ pressed");
    record.add("14:00:02", "⚠️ slow");
    EXPECT_THAT(record.problems(), ElementsAre(LogRow{1, "14:00:00", "✗ failed"}, LogRow{122, "14:00:02", "⚠️ slow"}));
}

TEST(LogRecord, FoldsARunOfHeartbeatsIntoOneRowThatKeepsItsNumber) {
    LogRecord record;
    record.add("14:00:00", ping(1));
    record.add("14:00:10", ping(10));
    record.add("14:00:20", ping(20));
    EXPECT_THAT(record.rows(),
                ElementsAre(LogRow{1, "14:00:20", "♥ ping #1 … #20 received → replied (connection alive)"}));
    EXPECT_EQ(record.text(), "14:00:00  " + ping(1) + "\n14:00:10  " + ping(10) + "\n14:00:20  " + ping(20) + "\n");
}

TEST(LogRecord, FoldsTheHeartbeatsOfBothSurfacesApart) {
    LogRecord record;
    for (const int number : {10, 20, 30}) {
        record.add("", ping(number));
        record.add("", ping(number, "[9-16] "));
    }
    EXPECT_THAT(linesOf(record), ElementsAre("♥ ping #10 … #30 received → replied (connection alive)",
                                             "[9-16] ♥ ping #10 … #30 received → replied (connection alive)"));
}

TEST(LogRecord, BeginsANewRunAfterAnyOtherLine) {
    LogRecord record;
    record.add("", ping(10));
    record.add("", "✗ failed");
    record.add("", ping(20));
    EXPECT_THAT(linesOf(record), ElementsAre(ping(10), "✗ failed", ping(20)));
}

TEST(LogRecord, LeavesLinesAloneThatOnlyLookLikeHeartbeats) {
    LogRecord record;
    record.add("", "♥ ping #");
    record.add("", "♥ ping #");
    record.add("", "Full names: the track “♥ ping #1”");
    EXPECT_EQ(record.rows().size(), 3U);
}

TEST(LogRecord, KeepsFailuresInSightThroughHoursOfHeartbeats) {
    LogRecord record;
    record.add("08:00:00", "✗ UDP failed: bind: Address already in use");
    for (int number = 10; number < 100'000; number += 10)
        record.add("", ping(number));
    EXPECT_EQ(record.rows().front().line, "✗ UDP failed: bind: Address already in use");
}

TEST(LogRecord, ForgetsTheOldestLinesAndRows) {
    LogRecord record;
    for (int i = 1; i <= 3000; ++i)
        record.add("", std::to_string(i));
    EXPECT_EQ(record.rows().size(), LogRecord::mostRows);
    EXPECT_EQ(record.rows().front().line, "2881");
    EXPECT_TRUE(record.text().starts_with("  1001\n"));
}

// ---- What changes on the screen

using Rows = std::vector<LogRow>;

TEST(RowChange, IsNoneBetweenEqualRows) {
    EXPECT_EQ(changeBetween({}, {}), (RowChange{0, 0}));
    const Rows rows{{1, "", "a"}, {2, "", "b"}};
    EXPECT_EQ(changeBetween(rows, rows), (RowChange{0, 2}));
}

TEST(RowChange, KeepsWhatStaysAndAppendsWhatIsNew) {
    EXPECT_EQ(changeBetween({{1, "", "a"}}, {{1, "", "a"}, {2, "", "b"}}), (RowChange{0, 1}));
    EXPECT_EQ(changeBetween({{1, "", "a"}, {2, "", "b"}}, {{2, "", "b"}, {3, "", "c"}}), (RowChange{1, 1}));
    EXPECT_EQ(changeBetween({{1, "", "a"}}, {{7, "", "g"}}), (RowChange{1, 0}));
    EXPECT_EQ(changeBetween({{1, "", "a"}}, {}), (RowChange{1, 0}));
}

TEST(RowChange, ReplacesRowsWhoseTextHasChangedAndWhatFollowsThem) {
    const Rows before{{1, "", "a"}, {2, "", "#1"}, {3, "", "c"}};
    const Rows after{{1, "", "a"}, {2, "", "#1 … #2"}, {3, "", "c"}};
    EXPECT_EQ(changeBetween(before, after), (RowChange{0, 1}));
}

} // namespace
} // namespace lumbrine
