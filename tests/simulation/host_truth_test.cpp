// What the simulation holds for true of a host's names.
#include "tests/simulation/host_truth.h"

namespace lumbrine::simulation {
namespace {

using testing::ElementsAre;

Names lettersUpTo(char last) {
    Names names;
    for (char letter = 'A'; letter <= last; ++letter)
        names.emplace_back(1, letter);
    return names;
}

HostView hostOf(Names names, int offset = 0) {
    return {.offset = offset, .width = 8, .names = std::move(names)};
}

TEST(HostTruth, ShowsBlankStripsBeyondTheEnd) {
    EXPECT_THAT(windowAt(hostOf({"A", "B"}), 1), ElementsAre("B", "", "", "", "", "", "", ""));
}

TEST(HostTruth, KnowsAPlaceByItsNamesAlone) {
    const Names map{"A", "B", "A", "C"};
    EXPECT_EQ(onlyPlaceOf({"B", "A"}, map), 1);
    EXPECT_EQ(onlyPlaceOf({"C", ""}, map), 3);
    EXPECT_EQ(onlyPlaceOf({"A"}, map), -1);      // two of them
    EXPECT_EQ(onlyPlaceOf({"D", "A"}, map), -1); // none
    EXPECT_EQ(onlyPlaceOf({"", ""}, map), -1);
}

TEST(HostTruth, FindsEveryTrackWhereBanksLookDifferent) {
    const Names all = lettersUpTo('T');
    for (const EndOfSession end : {EndOfSession::fill, EndOfSession::blank}) {
        EXPECT_THAT(mapsOfScans(hostOf(all, 5), {.endOfSession = end}), ElementsAre(all));
        EXPECT_TRUE(everyOffsetLooksDifferent(hostOf(all), {.endOfSession = end}));
    }
}

TEST(HostTruth, IsTheHostsOwnList) {
    EXPECT_TRUE(isMapOf(hostOf({"A", "A", "", "B", ""}), {"A", "A", "", "B"}));
    EXPECT_FALSE(isMapOf(hostOf({"A", "A", "", "B"}), {"A", "", "B"})); // as a scan that joins equal neighbours has it
    EXPECT_FALSE(isMapOf(hostOf({"A", "A", "", "B"}), {"A", "A"}));     // that takes a blank for the end
}

TEST(HostTruth, JoinsEqualNeighboursAcrossBanks) {
    Names names = lettersUpTo('P');
    names[8] = names[7];
    Names merged = names;
    merged.erase(merged.begin() + 8);
    EXPECT_THAT(mapsOfScans(hostOf(names), {}), ElementsAre(merged));
}

TEST(HostTruth, GoesOnAfterABankThatEndsBlank) {
    Names names = lettersUpTo('X');
    names[15] = "";
    EXPECT_THAT(mapsOfScans(hostOf(names), {}), ElementsAre(names));
}

TEST(HostTruth, TakesBanksThatLookAlikeForOne) {
    // From the second bank on going back seems to change nothing, so that a scan may begin there.
    const Names eights(24, "V");
    const std::set<Names> maps = mapsOfScans(hostOf(eights), {});
    EXPECT_THAT(maps, ElementsAre(Names(8, "V")));
    EXPECT_FALSE(everyOffsetLooksDifferent(hostOf(eights), {}));
}

} // namespace
} // namespace lumbrine::simulation
