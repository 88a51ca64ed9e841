#include "model/bank/scan_ending.h"

#include <string>

namespace lumbrine {
namespace {

// One letter for each strip of four; a fader for each where given.
SurveyedBank bank(const std::string& letters, const std::vector<double>& faders = {}) {
    SurveyedBank made;
    for (const char letter : letters)
        made.names.push_back(letter == ' ' ? "" : std::string(1, letter));
    made.faders.assign(faders.begin(), faders.end());
    made.faders.resize(letters.size());
    return made;
}

using Banks = std::vector<SurveyedBank>;

// ---- By the banks alone

TEST(ScanEnding, IsEvidentByTwoTracksThatBothBanksShow) {
    EXPECT_EQ(ScanEnding::evidentLastStep({bank("ABCD"), bank("CDEF")}), 2u);
    EXPECT_EQ(ScanEnding::evidentLastStep({bank("ABCD"), bank("BCDE")}), 1u);
}

TEST(ScanEnding, IsEvidentByStripsWithoutATrack) {
    EXPECT_EQ(ScanEnding::evidentLastStep({bank("ABCD"), bank("DE  ")}), 4u);
    EXPECT_EQ(ScanEnding::evidentLastStep({bank("AB  ")}), 4u);
}

TEST(ScanEnding, IsNotEvidentByOneTrackAlone) {
    EXPECT_EQ(ScanEnding::evidentLastStep({bank("ABCD"), bank("DEFG")}), 0u);
    EXPECT_EQ(ScanEnding::evidentLastStep({bank("ABCD"), bank("EFGH")}), 0u);
    EXPECT_EQ(ScanEnding::evidentLastStep({bank("ABCD")}), 0u);
}

TEST(ScanEnding, IsNotEvidentByTracksThatLookAlike) {
    EXPECT_EQ(ScanEnding::evidentLastStep({bank("ABVV"), bank("VVVC")}), 0u);
}

TEST(ScanEnding, IsEvidentByFadersWhereNamesAreAlike) {
    EXPECT_EQ(ScanEnding::evidentLastStep({bank("VVVV", {0.1, 0.2, 0.3, 0.4}), bank("VVVV", {0.2, 0.3, 0.4, 0.5})}),
              1u);
}

TEST(ScanEnding, IsEvidentThoughOneFaderHasMovedMeanwhile) {
    EXPECT_EQ(ScanEnding::evidentLastStep({bank("ABCD", {0.1, 0.2, 0.3, 0.4}), bank("BCDE", {0.9, 0.3, 0.4, 0.5})}),
              1u);
}

// ---- Looking back

TEST(ScanEnding, IsWhereTheBankBeforeComesBackToSight) {
    const Banks banks{bank("ABCD"), bank("DEFG")};
    ScanEnding overlapping(banks);
    ASSERT_TRUE(overlapping.isOpen());
    overlapping.sawBefore(1, bank("CDEF"));
    EXPECT_FALSE(overlapping.isOpen());
    EXPECT_EQ(overlapping.lastStep(), 3u);
    EXPECT_EQ(overlapping.lastOffset(), 3u);

    ScanEnding following(banks);
    following.sawBefore(1, bank("DDEF"));
    EXPECT_EQ(following.lastStep(), 4u);
}

TEST(ScanEnding, HasMovedToABankThatLooksTheSame) {
    const Banks banks{bank("ABCD"), bank("EFGH")};
    ScanEnding moved(banks);
    moved.sawBefore(1, bank("HEFG"));
    EXPECT_TRUE(moved.hasMoved());
    ScanEnding stayed(banks);
    stayed.sawBefore(1, bank("DEFG"));
    EXPECT_FALSE(stayed.hasMoved());
    EXPECT_EQ(stayed.lastStep(), 4u);
}

TEST(ScanEnding, OfOneBankHasMovedWhenAChannelBackShowsSomethingElse) {
    const Banks banks{bank("ABCD")};
    ScanEnding stayed(banks);
    stayed.sawBefore(1, bank("ABCD"));
    EXPECT_FALSE(stayed.hasMoved());
    EXPECT_EQ(stayed.lastStep(), 4u);
    EXPECT_EQ(stayed.lastOffset(), 0u);
    ScanEnding moved(banks);
    moved.sawBefore(1, bank("DABC"));
    EXPECT_TRUE(moved.hasMoved());
}

TEST(ScanEnding, OfEqualTracksIsFoundWhereTheyBegin) {
    const Banks banks{bank("ABVV"), bank("VVVV")};
    ScanEnding ending(banks);
    ending.sawBefore(1, bank("VVVV"));
    EXPECT_TRUE(ending.isOpen());
    ending.sawBefore(2, bank("VVVV"));
    EXPECT_TRUE(ending.isOpen());
    ending.sawBefore(3, bank("BVVV"));
    EXPECT_FALSE(ending.isOpen());
    EXPECT_FALSE(ending.hasMoved());
    EXPECT_EQ(ending.lastStep(), 4u);
}

TEST(ScanEnding, OfTracksThatAllLookAlikeStaysOpen) {
    const Banks banks{bank("VVVV")};
    ScanEnding ending(banks);
    ending.sawBefore(1, bank("VVVV"));
    EXPECT_TRUE(ending.isOpen());
    EXPECT_EQ(ending.lastStep(), 0u);
}

TEST(ScanEnding, FitsNothingThatHasChangedMeanwhile) {
    const Banks banks{bank("ABCD"), bank("EFGH")};
    ScanEnding ending(banks);
    ending.sawBefore(1, bank("XYZW"));
    EXPECT_FALSE(ending.isOpen());
    EXPECT_FALSE(ending.hasMoved());
    EXPECT_EQ(ending.lastStep(), 0u);
}

} // namespace
} // namespace lumbrine
