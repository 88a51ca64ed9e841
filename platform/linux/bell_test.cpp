#include "platform/linux/bell.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace lumbrine {
namespace {

using Clock = std::chrono::steady_clock;

TEST(Bell, RungBeforeTheWaitEndsItAtOnce) {
    Bell bell;
    bell.ring();
    bell.wait();
}

TEST(Bell, WakesAThreadThatWaits) {
    Bell bell;
    std::atomic<bool> woken{false};
    std::thread sleeper([&] {
        bell.wait();
        woken = true;
    });
    bell.ring();
    sleeper.join();
    EXPECT_TRUE(woken);
}

TEST(Bell, RungTwiceEndsOneWait) {
    Bell bell;
    bell.ring();
    bell.ring();
    bell.wait();
    const auto before = Clock::now();
    bell.waitFor(seconds(0.02));
    EXPECT_GE(Clock::now() - before, std::chrono::milliseconds(20));
}

TEST(Bell, WaitsForALimitAcrossAFullSecond) {
    Bell bell;
    const auto before = Clock::now();
    bell.waitFor(seconds(1.001));
    EXPECT_GE(Clock::now() - before, std::chrono::milliseconds(1001));
}

TEST(Bell, DoesNotWaitForALimitThatHasPassed) {
    Bell bell;
    bell.waitFor(Duration::zero());
    bell.waitFor(seconds(-1));
}

TEST(Bell, RungDuringALimitedWaitEndsIt) {
    Bell bell;
    bell.ring();
    const auto before = Clock::now();
    bell.waitFor(seconds(100));
    EXPECT_LT(Clock::now() - before, std::chrono::seconds(50));
}

} // namespace
} // namespace lumbrine
