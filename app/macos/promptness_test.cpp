#include "app/macos/promptness.h"

namespace lumbrine {
namespace {

class PromptnessTest : public ::testing::Test {
protected:
    void with(bool proTools, bool client) {
        published.huiConnected = proTools;
        published.iosConnected = client;
        promptness.follow(published);
    }

    PublishedState published;
    int begun = 0;
    int ended = 0;
    Promptness promptness{[this] {
        ++begun;
        return Promptness::Hold(&begun, [this](void*) { ++ended; });
    }};
};

TEST_F(PromptnessTest, IsNotAskedForWhileNobodyIsThere) {
    with(false, false);
    EXPECT_EQ(begun, 0);
}

TEST_F(PromptnessTest, BeginsWithTheFirstReasonAndOnlyOnce) {
    with(false, true);
    with(true, true);
    with(true, false);
    EXPECT_EQ(begun, 1);
    EXPECT_EQ(ended, 0);
}

TEST_F(PromptnessTest, EndsWhenTheLastOneIsGoneAndBeginsAgain) {
    with(true, false);
    with(false, false);
    EXPECT_EQ(ended, 1);
    with(false, false);
    EXPECT_EQ(ended, 1);
    with(false, true);
    EXPECT_EQ(begun, 2);
}

} // namespace
} // namespace lumbrine
