#include "platform/api/runtime.h"
#include "platform/posix/run_loop.h"

#include <atomic>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

TEST(RunLoop, IsLeftAtOnceWhenItWasStoppedBefore) {
    RunLoop loop;
    loop.post([] { FAIL() << "ran after stop"; });
    loop.stop();
    loop.run();
}

TEST(RunLoop, IsStoppedByAnotherThreadWhileItWaits) {
    RunLoop loop;
    std::thread other([&] {
        std::this_thread::sleep_for(10ms);
        loop.stop();
    });
    loop.run();
    other.join();
}

TEST(RunLoop, IsOnMainOnTheThreadThatRunsIt) {
    RunLoop loop;
    EXPECT_TRUE(loop.onMain());
    std::thread other([&] {
        EXPECT_FALSE(loop.onMain());
        loop.post([&] {
            EXPECT_TRUE(loop.onMain());
            loop.stop();
        });
        loop.run();
    });
    other.join();
    EXPECT_FALSE(loop.onMain());
}

TEST(RunLoop, KeepsTheOrderOfEachThreadsJobs) {
    RunLoop loop;
    std::vector<int> last(4, -1);
    std::atomic<int> done{0};
    std::vector<std::thread> posters;
    for (std::size_t poster = 0; poster < last.size(); ++poster) {
        posters.emplace_back([&, poster] {
            for (int i = 0; i < 500; ++i) {
                loop.post([&, poster, i] {
                    EXPECT_EQ(last[poster], i - 1);
                    last[poster] = i;
                });
            }
            loop.post([&] {
                if (++done == 4) loop.stop();
            });
        });
    }
    loop.run();
    for (std::thread& poster : posters)
        poster.join();
    EXPECT_EQ(last, std::vector<int>(4, 499));
}

// A job that came due while the main thread was busy, and one that is posted after that.
std::string orderOfALateTimer(TimerOrder order) {
    RunLoop loop(order);
    std::string ran;
    loop.post([&] {
        loop.postAfter(1ns, [&] { ran += "timer "; });
        std::this_thread::sleep_for(1ms);
        loop.post([&] { ran += "posted "; });
        loop.postAfter(1ms, [&] { loop.stop(); });
    });
    loop.run();
    return ran;
}

TEST(RunLoop, RunsWhatWasPostedBeforeATimerThatIsLate) {
    EXPECT_EQ(orderOfALateTimer(TimerOrder::whenSeen), "posted timer ");
}

TEST(RunLoop, RunsATimerThatIsLateWhereItBecameDueWhenAskedTo) {
    EXPECT_EQ(orderOfALateTimer(TimerOrder::whenDue), "timer posted ");
}

TEST(RunLoop, DestroysTheJobsThatItNeverRan) {
    const auto object = std::make_shared<int>(1);
    {
        RunLoop loop;
        loop.post([object] {});
        loop.postAfter(1h, [object] {});
    }
    EXPECT_EQ(object.use_count(), 1);
}

} // namespace
} // namespace lumbrine
