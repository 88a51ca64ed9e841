#include "model/hands/host_reaction.h"

#include <gtest/gtest.h>

#include <chrono>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

class HostReactionTest : public ::testing::Test {
protected:
    void shows(Duration after) {
        reaction.pressed(now);
        reaction.shown(now + after);
        now += 5s;
    }

    HostReaction reaction;
    TimePoint now{1h};
};

TEST_F(HostReactionTest, CountsAsSlowUntilThreePressesHaveShownTheirEffect) {
    shows(20ms);
    shows(20ms);
    EXPECT_EQ(reaction.patience(), 1100ms);
    shows(20ms);
    EXPECT_EQ(reaction.patience(), 270ms);
}

TEST_F(HostReactionTest, CountsAsSlowUntilThreePressesHaveHadNoEffect) {
    for (int press = 0; press < 3; ++press)
        reaction.pressed(now += 1101ms);
    EXPECT_EQ(reaction.patience(), 1100ms);
    reaction.pressed(now += 1101ms);
    EXPECT_EQ(reaction.patience(), 270ms);
}

TEST_F(HostReactionTest, IsTheSlowestAndATenthOfASecond) {
    shows(500ms);
    shows(700ms);
    shows(700ms);
    EXPECT_EQ(reaction.usual(), 700ms);
    EXPECT_EQ(reaction.patience(), 800ms);
}

TEST_F(HostReactionTest, BecomesShorterSlowly) {
    shows(900ms);
    shows(100ms);
    EXPECT_EQ(reaction.usual(), 800ms);
    for (int i = 0; i < 40; ++i)
        shows(100ms);
    EXPECT_LT(reaction.usual(), 110ms);
}

TEST_F(HostReactionTest, IsCountedFromTheFirstOfSeveralPresses) {
    reaction.pressed(now);
    reaction.pressed(now + 42ms);
    reaction.shown(now + 500ms);
    reaction.shown(now + 542ms);
    EXPECT_EQ(reaction.usual(), 500ms);
}

TEST_F(HostReactionTest, IsNotLearnedFromPressesThatMeetTheEffectOfOthers) {
    shows(500ms);
    reaction.pressed(now);
    reaction.pressed(now + 300ms);
    reaction.shown(now + 500ms);
    reaction.pressed(now + 550ms);
    reaction.shown(now + 800ms); // the second
    EXPECT_EQ(reaction.usual(), 500ms);
}

TEST_F(HostReactionTest, IsNotLearnedFromAPressWithoutEffect) {
    reaction.pressed(now);
    reaction.shown(now + 1101ms); // by somebody at the host
    EXPECT_EQ(reaction.usual(), 0ms);
    reaction.pressed(now);
    reaction.pressed(now + 2s);
    reaction.shown(now + 2s + 30ms);
    EXPECT_EQ(reaction.usual(), 30ms);
}

} // namespace
} // namespace lumbrine
