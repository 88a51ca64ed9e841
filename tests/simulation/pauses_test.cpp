// What is late because somebody stood still is told from what is late by itself.
#include "tests/simulation/pauses.h"
#include "tests/simulation/testing/wire_actions.h"

namespace lumbrine::simulation {
namespace {

const Pauses pauses({{at(1), at(1.5)}, {at(1.2), at(2)}, {at(3), at(3.5)}});

TEST(Pauses, AreCountedOnceWhereTheyOverlap) {
    EXPECT_EQ(pauses.within(at(0), at(10)), seconds(1.5));
    EXPECT_EQ(pauses.within(at(1.75), at(3.25)), seconds(0.5));
    EXPECT_EQ(pauses.within(at(2), at(3)), seconds(0));
}

TEST(Pauses, ExplainWhatIsLateByNoMore) {
    EXPECT_TRUE(pauses.explain(at(1), at(2)));
    EXPECT_TRUE(pauses.explain(at(1.25), at(1.5)));
    EXPECT_FALSE(pauses.explain(at(1), at(2.25)));
    EXPECT_FALSE(pauses.explain(at(0.5), at(2)));
    EXPECT_FALSE(pauses.explain(at(2), at(1.75)));
    EXPECT_TRUE(Pauses().explain(at(5), at(5)));
}

TEST(Pauses, MayComeAtAnyTimeOfWhatTakesSomeTime) {
    EXPECT_TRUE(pauses.mayTake(at(0.75), seconds(1.5), at(3.25))); // due at 2.25
    EXPECT_FALSE(pauses.mayTake(at(0.75), seconds(1.5), at(4)));
    EXPECT_FALSE(pauses.mayTake(at(0.75), seconds(1.5), at(2.125)));
}

TEST(Pauses, MayBringWhatWasDecidedApartCloserTogether) {
    EXPECT_TRUE(pauses.mayFollow(at(2), seconds(0.5), at(2.25))); // decided at 1.75
    EXPECT_TRUE(pauses.mayFollow(at(2), seconds(0.5), at(2.5)));
    EXPECT_FALSE(pauses.mayFollow(at(2), seconds(0.5), at(2.75)));
    EXPECT_FALSE(pauses.mayFollow(at(2.25), seconds(0.5), at(2.5)));
}

TEST(Pauses, AreLeftOutOfTheTimeBefore) {
    EXPECT_EQ(pauses.before(at(2.75), seconds(0.5)), at(2.25));
    EXPECT_EQ(pauses.before(at(2.5), seconds(1)), at(0.5));
    EXPECT_EQ(pauses.before(at(3.25), seconds(1.25)), at(0.75));
    EXPECT_EQ(pauses.before(at(0.5), seconds(0.25)), at(0.25));
}

TEST(Pauses, MayLieBetweenADecisionAndWhatComesOfIt) {
    EXPECT_EQ(pauses.earliest(at(2)), at(1));
    EXPECT_EQ(pauses.earliest(at(2.5)), at(2.5));
    EXPECT_EQ(pauses.earliest(at(4)), at(4));
    EXPECT_EQ(pauses.latest(at(1.5)), at(2));
    EXPECT_EQ(pauses.latest(at(2.5)), at(2.5));
}

} // namespace
} // namespace lumbrine::simulation
