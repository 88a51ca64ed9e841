#include "seal/sequence_window.h"

#include <gtest/gtest.h>

namespace lumbrine::seal {
namespace {

class SequenceWindowTest : public testing::Test {
protected:
    // Arrives now; was sent `before` that.
    std::optional<SequenceWindow::Arrival> arrives(std::uint32_t count, double before = 0) {
        return window.admit(Sequence::at(now - seconds(before) + clocksApart, count), now);
    }
    bool counts(std::uint32_t count) { return arrives(count).has_value(); }

    TimePoint now{seconds(1000.0)};
    Duration clocksApart{};
    SequenceWindow window;
};

TEST_F(SequenceWindowTest, AdmitsEachDatagramOnce) {
    for (const std::uint32_t count : {1U, 2U, 4U, 3U})
        EXPECT_TRUE(counts(count)) << count;
    for (const std::uint32_t count : {1U, 2U, 3U, 4U})
        EXPECT_FALSE(counts(count)) << count;
}

TEST_F(SequenceWindowTest, AdmitsNoDatagramWithoutACount) {
    EXPECT_FALSE(counts(0));
}

TEST_F(SequenceWindowTest, ReachesSixtyThreeDatagramsBack) {
    EXPECT_TRUE(counts(100));
    EXPECT_FALSE(counts(36));
    EXPECT_TRUE(counts(37));
    EXPECT_FALSE(counts(37));
    EXPECT_TRUE(counts(99));
}

TEST_F(SequenceWindowTest, ForgetsWhatItsNewestLeavesBehind) {
    EXPECT_TRUE(counts(1));
    EXPECT_TRUE(counts(64));
    EXPECT_FALSE(counts(1));
    EXPECT_TRUE(counts(65));
    EXPECT_FALSE(counts(1));
    EXPECT_TRUE(counts(65 + 64));
    EXPECT_FALSE(counts(65));
    EXPECT_TRUE(counts(66));
}

TEST_F(SequenceWindowTest, SaysWhichDatagramIsTheNewest) {
    EXPECT_TRUE(arrives(2)->isNewest);
    EXPECT_FALSE(arrives(1)->isNewest);
    EXPECT_TRUE(arrives(3)->isNewest);
}

TEST_F(SequenceWindowTest, EndsWithTheLastCountAndDoesNotBeginAgain) {
    EXPECT_TRUE(counts(Sequence::maxCount));
    EXPECT_FALSE(counts(Sequence::maxCount));
    EXPECT_FALSE(counts(1));
    EXPECT_TRUE(counts(Sequence::maxCount - 63));
}

TEST_F(SequenceWindowTest, TellsHowLateADatagramIs) {
    EXPECT_EQ(arrives(1, 0.0)->late, Duration::zero());
    now += seconds(10);
    EXPECT_EQ(arrives(3, 0.0)->late, Duration::zero());
    EXPECT_EQ(arrives(2, 2.5)->late, seconds(2.5));
    now += seconds(4);
    EXPECT_EQ(arrives(4, 3.0)->late, seconds(3.0)) << "also when it is the newest";
}

TEST_F(SequenceWindowTest, NeedsNoAgreementOfTheClocks) {
    clocksApart = seconds(98765.0);
    EXPECT_EQ(arrives(1, 0.0)->late, Duration::zero());
    now += seconds(2);
    EXPECT_EQ(arrives(2, 1.0)->late, seconds(1.0));
}

TEST_F(SequenceWindowTest, FollowsTheSendersTimeAsItBeginsAgain) {
    for (std::uint32_t count = 1; count < 400; ++count, now += seconds(1)) {
        EXPECT_EQ(arrives(2 * count, 0.0)->late, Duration::zero());
        EXPECT_EQ(arrives(2 * count - 1, 3.0)->late, seconds(3.0));
    }
}

TEST_F(SequenceWindowTest, CountsFromTheQuickestDatagram) {
    EXPECT_EQ(arrives(1, 1.5)->late, Duration::zero());
    EXPECT_EQ(arrives(2, 0.5)->late, Duration::zero());
    now += seconds(2);
    EXPECT_EQ(arrives(3, 1.5)->late, seconds(1.0));
}

TEST_F(SequenceWindowTest, TakesANewTimeAfterAJumpOfTheSendersClock) {
    arrives(1);
    now += seconds(31);
    clocksApart = -seconds(30); // the sender's clock stood still, as in a sleep
    EXPECT_EQ(arrives(2)->late, seconds(30));
    window.setTime(now);
    EXPECT_EQ(arrives(3)->late, Duration::zero());
    clocksApart = seconds(30);
    EXPECT_EQ(arrives(4)->late, Duration::zero());
}

TEST_F(SequenceWindowTest, CountsWhatWasLost) {
    for (const std::uint32_t count : {1U, 2U, 5U, 9U})
        counts(count);
    EXPECT_EQ(window.received(), 4U);
    EXPECT_EQ(window.lost(), 5U);
    counts(4);
    counts(4);
    EXPECT_EQ(window.lost(), 4U) << "late is not lost, and a double is no other one";
}

} // namespace
} // namespace lumbrine::seal
