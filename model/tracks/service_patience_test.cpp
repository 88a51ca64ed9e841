// When a failing service is asked again, and from when on it counts as away.
#include "model/tracks/service_patience.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumbrine {
namespace {

using testing::Each;
using testing::ElementsAre;

class ServicePatienceTest : public testing::Test {
protected:
    // The ticks until the next request.
    int ticksToRequest() {
        int ticks = 1;
        while (!patience.mayAsk())
            ++ticks;
        return ticks;
    }

    std::vector<int> pausesAfterFailures(int count, bool isRunning) {
        std::vector<int> pauses;
        for (int i = 0; i < count; ++i) {
            patience.failed(now, now, isRunning);
            pauses.push_back(ticksToRequest());
        }
        return pauses;
    }

    TimePoint now = TimePoint(seconds(100));
    ServicePatience patience;
};

TEST_F(ServicePatienceTest, AsksWithEveryTickWhileAllIsWell) {
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(patience.mayAsk());
        patience.answered();
    }
}

TEST_F(ServicePatienceTest, DoublesThePauseWithEachFailureUpTo30Seconds) {
    EXPECT_THAT(pausesAfterFailures(8, true), ElementsAre(1, 2, 4, 8, 16, 25, 25, 25));
    patience.answered();
    EXPECT_EQ(ticksToRequest(), 1);
    EXPECT_THAT(pausesAfterFailures(2, true), ElementsAre(1, 2));
}

TEST_F(ServicePatienceTest, AsksAServiceThatDoesNotRunWithEveryTick) {
    EXPECT_THAT(pausesAfterFailures(5, false), Each(1));
}

TEST_F(ServicePatienceTest, AsksAtOnceWhenSomethingHappens) {
    pausesAfterFailures(5, true);
    patience.failed(now, now, true);
    EXPECT_FALSE(patience.mayAskAtOnce(now + seconds(1.199)));
    EXPECT_EQ(ticksToRequest(), 1); // so the next tick asks
    patience.failed(now, now, true);
    EXPECT_TRUE(patience.mayAskAtOnce(now + seconds(1.2)));
    EXPECT_THAT(pausesAfterFailures(2, true), ElementsAre(1, 2));
}

TEST_F(ServicePatienceTest, DoesNotHurryAServiceThatAnswers) {
    EXPECT_FALSE(patience.mayAskAtOnce(now));
}

TEST_F(ServicePatienceTest, CountsAServiceAsAwayTenSecondsAfterItsFirstFailingRequest) {
    EXPECT_TRUE(patience.failed(now, now + seconds(6), true));
    EXPECT_FALSE(patience.failed(now + seconds(8), now + seconds(9), true));
    EXPECT_FALSE(patience.isAway(now + seconds(9.999)));
    EXPECT_TRUE(patience.isAway(now + seconds(10)));
    patience.answered();
    EXPECT_FALSE(patience.isAway(now + seconds(20)));
}

} // namespace
} // namespace lumbrine
