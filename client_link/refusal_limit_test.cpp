#include "client_link/refusal_limit.h"

#include <chrono>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

class RefusalLimitTest : public testing::Test {
protected:
    // How many of so many refusals to a host are allowed at that second.
    int allowed(int count, const std::string& host, double at) {
        int yes = 0;
        for (int i = 0; i < count; ++i) {
            if (!limit.allows(host, TimePoint() + seconds(at))) continue;
            limit.count(host, TimePoint() + seconds(at));
            ++yes;
        }
        return yes;
    }

    // The same for one refusal to each of so many hosts.
    int allowedHosts(int count, double at) {
        int yes = 0;
        for (int i = 0; i < count; ++i)
            yes += allowed(1, "10.0.0." + std::to_string(i), at);
        return yes;
    }

    RefusalLimit limit;
};

TEST_F(RefusalLimitTest, AllowsFiftyToAHostAtOnce) {
    EXPECT_EQ(allowed(51, "10.0.0.1", 0), 50);
}

TEST_F(RefusalLimitTest, AllowsTheNextToThatHostASecondAfterTheFirst) {
    EXPECT_EQ(allowed(50, "10.0.0.1", 0), 50);
    EXPECT_EQ(allowed(1, "10.0.0.1", 0.999), 0);
    EXPECT_EQ(allowed(51, "10.0.0.1", 1.0), 50);
}

TEST_F(RefusalLimitTest, HoldsForAnySecondAndNotForSecondsOfAClock) {
    EXPECT_EQ(allowed(10, "10.0.0.1", 0), 10);
    EXPECT_EQ(allowed(50, "10.0.0.1", 0.9), 40);
    EXPECT_EQ(allowed(50, "10.0.0.1", 1.1), 10);
    EXPECT_EQ(allowed(50, "10.0.0.1", 1.899), 0);
    EXPECT_EQ(allowed(50, "10.0.0.1", 1.9), 40);
}

TEST_F(RefusalLimitTest, DoesNotCountWhatItForbade) {
    EXPECT_EQ(allowed(1000, "10.0.0.1", 0), 50);
    EXPECT_EQ(allowed(1000, "10.0.0.1", 0.5), 0);
    EXPECT_EQ(allowed(1000, "10.0.0.1", 1.0), 50);
}

TEST_F(RefusalLimitTest, CountsFromTheSendingAndNotFromThePermission) {
    for (int i = 0; i < 50; ++i) {
        EXPECT_TRUE(limit.allows("10.0.0.1", TimePoint()));
        limit.count("10.0.0.1", TimePoint() + 300ms); // the thread stood still
    }
    EXPECT_EQ(allowed(1, "10.0.0.1", 1.299), 0);
    EXPECT_EQ(allowed(1, "10.0.0.1", 1.3), 1);
}

TEST_F(RefusalLimitTest, CountsEachHostByItself) {
    EXPECT_EQ(allowed(50, "10.0.0.1", 0), 50);
    EXPECT_EQ(allowed(50, "10.0.0.2", 0), 50);
    EXPECT_EQ(allowed(1, "10.0.0.1", 0.5), 0);
}

TEST_F(RefusalLimitTest, AllowsAThousandToAllHostsTogether) {
    EXPECT_EQ(allowedHosts(1001, 0), 1000);
    EXPECT_EQ(allowed(1, "192.168.1.7", 0.999), 0);
    EXPECT_EQ(allowedHosts(1001, 1.0), 1000);
}

} // namespace
} // namespace lumbrine
