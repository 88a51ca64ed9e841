#include "model/track_window.h"

#include <gtest/gtest.h>

namespace lumbrine {
namespace {

using Names = TrackNames;

TEST(TrackWindow, IsLocatedWhereItsNamesStand) {
    EXPECT_EQ(locate(Names{"A", "B", "C", "D", "E"}, Names{"B", "C"}), 1);
    EXPECT_EQ(locate(Names{"A", "B", "C", "D", "E"}, Names{"A", "B"}), 0);
    EXPECT_EQ(locate(Names{"A", "B", "C", "D", "E"}, Names{"D", "E"}), 3);
}

TEST(TrackWindow, IsNowhereWhenItsNamesDoNotStandTogether) {
    EXPECT_EQ(locate(Names{"A", "B", "C"}, Names{"A", "C"}), -1);
    EXPECT_EQ(locate(Names{"A", "B", "C"}, Names{"C", "D"}), -1);
    EXPECT_EQ(locate(Names{"A"}, Names{"A", "B"}), -1);
}

TEST(TrackWindow, IsNowhereWhenItFitsTwice) {
    EXPECT_EQ(locate(Names{"A", "B", "A", "B"}, Names{"A", "B"}), -1);
}

TEST(TrackWindow, MayRunPastTheEndOfTheMap) {
    EXPECT_EQ(locate(Names{"A", "B", "C"}, Names{"C", "", ""}), 2);
    EXPECT_EQ(locate(Names{"A"}, Names{"A", "", "", ""}), 0);
}

TEST(TrackWindow, IsNowhereWhenItIsBlank) {
    EXPECT_EQ(locate(Names{"A", "B"}, Names{"", ""}), -1);
    EXPECT_EQ(locate(Names{"A", " \t"}, Names{" \t"}), -1);
    EXPECT_EQ(locate(Names{}, Names{"", ""}), -1);
    EXPECT_EQ(locate(Names{"A"}, Names{}), -1);
}

TEST(TrackWindow, IsComparedExactly) {
    EXPECT_EQ(locate(Names{"Kick", "Snr"}, Names{"kick"}), -1);
    EXPECT_EQ(locate(Names{"Kick", "Snr"}, Names{"Kick "}), -1);
}

TEST(TrackWindow, IsMergedOverTheLargestOverlap) {
    EXPECT_EQ(mergeWindow({"A", "B", "C", "D"}, Names{"C", "D", "E", "F"}), (Names{"A", "B", "C", "D", "E", "F"}));
    EXPECT_EQ(mergeWindow({"A", "A", "A"}, Names{"A", "A", "B"}), (Names{"A", "A", "A", "B"}));
    EXPECT_EQ(mergeWindow({"A", "B"}, Names{"A", "B"}), (Names{"A", "B"}));
}

TEST(TrackWindow, IsMergedOverASingleEqualName) {
    EXPECT_EQ(mergeWindow({"A", "B"}, Names{"B", "C"}), (Names{"A", "B", "C"}));
}

TEST(TrackWindow, IsAppendedWhereNothingOverlaps) {
    EXPECT_EQ(mergeWindow({"A", "B"}, Names{"C", "D"}), (Names{"A", "B", "C", "D"}));
    EXPECT_EQ(mergeWindow({}, Names{"C"}), (Names{"C"}));
    EXPECT_EQ(mergeWindow({"A"}, Names{}), (Names{"A"}));
}

TEST(TrackWindow, LosesItsBlankEndOnly) {
    EXPECT_EQ(trimTrailingEmpty({"", "A", " ", "B", " \t", ""}), (Names{"", "A", " ", "B"}));
    EXPECT_EQ(trimTrailingEmpty({" ", ""}), Names{});
    EXPECT_EQ(trimTrailingEmpty({}), Names{});
}

TEST(TrackWindow, TrimsSpacesAtBothEndsOfAName) {
    EXPECT_EQ(trimSpaces("  Gt r "), "Gt r");
    EXPECT_EQ(trimSpaces("    "), "");
    EXPECT_EQ(trimSpaces(""), "");
}

} // namespace
} // namespace lumbrine
