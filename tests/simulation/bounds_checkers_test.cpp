// The checkers of bounds see too many threads, long queues and a log that repeats itself.
#include "tests/simulation/bounds_checkers.h"
#include "tests/simulation/testing/wire_actions.h"

namespace lumbrine::simulation {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(Bounds, AreSixteenThreadsAndThirtyTwoJobs) {
    EXPECT_THAT(checkBounds({.threads = 16, .waiting = {{"a", 32}, {"b", 0}}}), IsEmpty());
    EXPECT_THAT(checkBounds({.threads = 17, .waiting = {}}), ElementsAre(HasSubstr("17 threads")));
    EXPECT_THAT(checkBounds({.threads = 1, .waiting = {{"a", 32}, {"b", 33}}}), ElementsAre(HasSubstr("queue b")));
}

TEST(Repeats, AreTwoEqualLinesWithinAMinute) {
    EXPECT_THAT(checkRepeats({{at(1), "Full names: 7"}, {at(2), "Full names: 8"}, {at(61), "Full names: 7"}}),
                IsEmpty());
    EXPECT_THAT(checkRepeats({{at(1), "Full names: 7"}, {at(2), "Full names: 8"}, {at(60), "Full names: 7"}}),
                ElementsAre(HasSubstr("Full names: 7")));
}

TEST(Repeats, AreNotEventsThatComeAgain) {
    EXPECT_THAT(checkRepeats({{at(1), "← Pan mode: Pan Left"}, {at(2), "← Pan mode: Pan Left"}}), IsEmpty());
    EXPECT_THAT(checkRepeats({{at(1), "[1-8] → switch"}, {at(2), "[1-8] → switch"}}), IsEmpty());
}

} // namespace
} // namespace lumbrine::simulation
