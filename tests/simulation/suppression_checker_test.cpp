// What the checker of untimely messages finds, and what it lets pass.
#include "tests/simulation/suppression_checker.h"

namespace lumbrine::simulation {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

constexpr bool atRest = false;
constexpr bool jobRuns = true;

class SuppressionCheckerTest : public testing::Test {
protected:
    void send(bool running, std::initializer_list<std::uint8_t> types, double time = 1) {
        for (const std::uint8_t type : types)
            checker.sent(TimePoint{} + seconds(time), running, Bytes{0x01, type, 0x00});
    }

    SuppressionChecker checker;
};

TEST_F(SuppressionCheckerTest, LetsEverythingPassAtRest) {
    send(atRest, {0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0x19, 0x1A, 0x1C, 0x1D});
    EXPECT_THAT(checker.violations(), IsEmpty());
}

TEST_F(SuppressionCheckerTest, FindsWhatShowsAnIntermediateState) {
    send(jobRuns, {0x11, 0x12, 0x14, 0x17, 0x1C});
    EXPECT_THAT(checker.violations(), SizeIs(5));
}

TEST_F(SuppressionCheckerTest, LetsNamesPositionsAndTransportPass) {
    send(jobRuns, {0x10, 0x16, 0x18, 0x19, 0x1A, 0x1D, 0x1B, 0x1E, 0x1F, 0x15});
    EXPECT_THAT(checker.violations(), IsEmpty());
}

TEST_F(SuppressionCheckerTest, LetsSwitchesPassAsPartOfEverything) {
    send(jobRuns, {0x13, 0x10, 0x10, 0x15, 0x18}, 1); // of a tick
    send(jobRuns, {0x10, 0x13, 0x15, 0x16}, 2);       // of a hello
    send(jobRuns, {0x16, 0x1A, 0x10, 0x13}, 3);       // of a seek whose successor has begun already
    EXPECT_THAT(checker.violations(), IsEmpty());
}

TEST_F(SuppressionCheckerTest, FindsSwitchesThatWentOutByThemselves) {
    send(jobRuns, {0x13}, 1);
    send(jobRuns, {0x13, 0x13, 0x10, 0x15}, 2); // once too often
    send(jobRuns, {0x13, 0x16, 0x15}, 3);
    send(jobRuns, {0x13}, 4);
    EXPECT_THAT(checker.violations(), SizeIs(4));
}

} // namespace
} // namespace lumbrine::simulation
