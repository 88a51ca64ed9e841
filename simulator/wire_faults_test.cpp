#include "simulator/wire_faults.h"

namespace lumbrine {
namespace {

std::map<WireFault, int> drawMany(WireFaults& faults) {
    std::map<WireFault, int> counts;
    for (int i = 0; i < 3000; ++i)
        ++counts[faults.draw()];
    return counts;
}

TEST(WireFaults, AreNoneUnlessTheyAreChosen) {
    WireFaults faults({}, 1);
    EXPECT_EQ(drawMany(faults), (std::map<WireFault, int>{{WireFault::none, 3000}}));
}

TEST(WireFaults, HappenAboutAsOftenAsChosen) {
    WireFaults faults({.resetOneIn = 10, .goAwayOneIn = 20, .dieOneIn = 100}, 1);
    const auto counts = drawMany(faults);
    EXPECT_NEAR(counts.at(WireFault::reset), 300, 60);
    EXPECT_NEAR(counts.at(WireFault::goAway), 150, 45);
    EXPECT_NEAR(counts.at(WireFault::die), 30, 20);
}

TEST(WireFaults, AreTheSameForTheSameSeed) {
    const ScriptingOptions options{.resetOneIn = 3, .dieOneIn = 5};
    WireFaults one(options, 7), other(options, 7);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(one.draw(), other.draw());
}

TEST(WireFaults, HappenToTheNextCallsWhenThatIsAskedFor) {
    WireFaults faults({}, 1);
    faults.next(WireFault::goAway, 2);
    EXPECT_EQ(faults.draw(), WireFault::goAway);
    EXPECT_EQ(faults.draw(), WireFault::goAway);
    EXPECT_EQ(faults.draw(), WireFault::none);
}

TEST(WireFaults, AreOverWhenTheyRestUntilOneIsAskedFor) {
    WireFaults faults({.resetOneIn = 1}, 1);
    EXPECT_EQ(faults.draw(), WireFault::reset);
    faults.next(WireFault::die, 5);
    faults.rest();
    EXPECT_EQ(faults.draw(), WireFault::none);
    faults.next(WireFault::die, 1);
    EXPECT_EQ(faults.draw(), WireFault::die);
}

} // namespace
} // namespace lumbrine
