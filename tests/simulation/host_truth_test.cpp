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

TEST(HostTruth, TellsWhetherEachOffsetLooksLikeNoOther) {
    for (const EndOfSession end : {EndOfSession::fill, EndOfSession::blank})
        EXPECT_TRUE(everyOffsetLooksDifferent(hostOf(lettersUpTo('T')), {.endOfSession = end}));
    EXPECT_FALSE(everyOffsetLooksDifferent(hostOf(Names(24, "V")), {}));
}

TEST(HostTruth, IsTheHostsOwnList) {
    EXPECT_TRUE(isMapOf(hostOf({"A", "A", "", "B", ""}), {"A", "A", "", "B"}));
    EXPECT_FALSE(isMapOf(hostOf({"A", "A", "", "B"}), {"A", "", "B"})); // equal neighbours joined
    EXPECT_FALSE(isMapOf(hostOf({"A", "A", "", "B"}), {"A", "A"}));     // a blank taken for the end
}

} // namespace
} // namespace lumbrine::simulation
