#include "platform/posix/real_runtime.h"
#include "platform/qt/qt_main_loop.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <atomic>
#include <thread>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

// The loop is created before the application, as in the programs.
class QtMainLoopTest : public testing::Test {
protected:
    void run() { loop.run(); }

    int count = 1;
    std::string name = "test";
    std::array<char*, 2> arguments{name.data(), nullptr};
    QtMainLoop loop;
    int early = 0;
    const int* posted = postEarly();
    QCoreApplication application{count, arguments.data()};

private:
    const int* postEarly() {
        loop.post([this] { ++early; });
        return &early;
    }
};

TEST_F(QtMainLoopTest, RunsWhatWasPostedBeforeTheApplicationWasThere) {
    loop.post([&] { loop.stop(); });
    run();
    EXPECT_EQ(early, 1);
}

TEST_F(QtMainLoopTest, RunsNothingAfterItWasStopped) {
    loop.post([&] { loop.stop(); });
    loop.post([] { FAIL() << "ran after stop"; });
    run();
    loop.post([] { FAIL() << "ran after stop"; });
    run();
}

TEST_F(QtMainLoopTest, IsStoppedByAnotherThreadWhileItWaits) {
    std::thread other([&] {
        std::this_thread::sleep_for(10ms);
        loop.stop();
    });
    run();
    other.join();
}

TEST_F(QtMainLoopTest, KnowsItsOwnThread) {
    EXPECT_TRUE(loop.onMain());
    std::thread([&] { EXPECT_FALSE(loop.onMain()); }).join();
}

TEST_F(QtMainLoopTest, KeepsTheOrderOfEachThreadsJobs) {
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
    run();
    for (std::thread& poster : posters)
        poster.join();
    EXPECT_EQ(last, std::vector<int>(4, 499));
}

TEST_F(QtMainLoopTest, RunsDelayedJobsInTheOrderOfTheirTimesAndNeverEarly) {
    std::vector<int> ran;
    const auto start = std::chrono::steady_clock::now();
    loop.postAfter(25ms, [&] {
        EXPECT_GE(std::chrono::steady_clock::now() - start, 25ms);
        ran.push_back(3);
        loop.stop();
    });
    loop.postAfter(5ms, [&] { ran.push_back(1); });
    loop.postAfter(15ms, [&] { ran.push_back(2); });
    loop.postAfter(0ms, [&] { ran.push_back(0); });
    loop.postAfter(10h, [&] { ran.push_back(4); });
    run();
    EXPECT_EQ(ran, (std::vector<int>{0, 1, 2, 3}));
}

TEST_F(QtMainLoopTest, RepeatsUntilTheTimerGoes) {
    int ticks = 0;
    std::unique_ptr<RepeatingTimer> timer;
    timer = loop.repeat(2ms, [&] {
        if (++ticks < 5) return;
        timer.reset();
        loop.postAfter(20ms, [&] { loop.stop(); });
    });
    run();
    EXPECT_EQ(ticks, 5);
}

TEST_F(QtMainLoopTest, BringsNoTicksThatItWasTooLateFor) {
    int ticks = 0;
    const auto timer = loop.repeat(5ms, [&] { ++ticks; });
    loop.post([&] {
        std::this_thread::sleep_for(52ms);
        loop.postAfter(1ms, [&] { loop.stop(); });
    });
    run();
    EXPECT_LE(ticks, 2);
}

TEST_F(QtMainLoopTest, GoesOnWhileAMenuOrADialogRunsALoopOfItsOwn) {
    std::vector<std::string> ran;
    loop.post([&] {
        QEventLoop dialog;
        loop.post([&] {
            ran.emplace_back("inside");
            dialog.quit();
        });
        dialog.exec();
        ran.emplace_back("after");
        loop.stop();
    });
    run();
    EXPECT_EQ(ran, (std::vector<std::string>{"inside", "after"}));
}

TEST_F(QtMainLoopTest, GoesOnAfterTheWindowSystemHasEndedIt) {
    int ran = 0;
    loop.post([&] { QCoreApplication::quit(); });
    run();
    loop.post([&] {
        ++ran;
        loop.stop();
    });
    run();
    EXPECT_EQ(ran, 1);
}

TEST_F(QtMainLoopTest, LetsTheToolkitHaveItsTurnBetweenJobsThatPostEachOther) {
    std::atomic<int> jobs{0};
    bool eventCame = false;
    std::function<void()> again = [&] {
        if (++jobs < 100'000 && !eventCame)
            loop.post([&] { again(); });
        else
            loop.stop();
    };
    loop.post([&] { again(); });
    QMetaObject::invokeMethod(&application, [&] { eventCame = true; }, Qt::QueuedConnection);
    run();
    EXPECT_TRUE(eventCame);
}

TEST_F(QtMainLoopTest, DestroysTheJobsThatItNeverRan) {
    const auto object = std::make_shared<int>(1);
    {
        QtMainLoop other;
        other.post([object] {});
        other.postAfter(1h, [object] {});
    }
    EXPECT_EQ(object.use_count(), 1);
}

TEST_F(QtMainLoopTest, DrainsTheMainQueueOfTheRuntime) {
    RealRuntime runtime(loop);
    int answer = 0;
    runtime.background(Priority::normal, [&] {
        const int got = runtime.syncMain([&] { return runtime.onMain() ? 42 : 0; });
        runtime.postMain([&, got] {
            answer = got;
            loop.stop();
        });
    });
    run();
    EXPECT_EQ(answer, 42);
    runtime.shutDown();
}

} // namespace
} // namespace lumbrine
