#include "platform/linux/jack_server.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"

#include <cerrno>
#include <cstdlib>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace lumbrine {
namespace {

// The calls that the server thread makes to the clients, in order.
class Calls {
public:
    void note(const std::string& call) {
        const std::lock_guard held(mutex);
        all.push_back(call);
    }
    std::vector<std::string> taken() {
        const std::lock_guard held(mutex);
        return std::exchange(all, {});
    }

private:
    std::mutex mutex;
    std::vector<std::string> all;
};

class FakeClient final : public JackServer::Client {
public:
    FakeClient(std::string name, Calls& calls) : name(std::move(name)), calls(calls) {}

    MIDIStatus open() override {
        calls.note(name + " opens");
        return onOpen();
    }
    void close() override {
        calls.note(name + " closes");
        isLost = false;
    }
    bool lost() const override { return isLost; }
    std::uint64_t cycles() const override { return isRunning ? cycleCount += isWoken ? 1 : 0 : 0; }
    void askServer() override {
        calls.note(name + " asks");
        onAsk();
    }
    bool review() override { return true; }

    std::function<MIDIStatus()> onOpen = [] { return 0; };
    bool isLost = false;
    bool isRunning = true;
    bool isWoken = true; // each look finds another cycle
    std::function<void()> onAsk = [] {};

private:
    const std::string name;
    Calls& calls;
    mutable std::uint64_t cycleCount = 1;
};

// libjack would free such a client, and closing it would free it again. The next attempt comes after a second.
TEST(JackServerTest, ClosesAClientThatIsLostAsSoonAsItIsBackBeforeItOpensTheNextOne) {
    RunLoop loop;
    RealRuntime runtime(loop);
    Calls calls;
    const auto a = std::make_shared<FakeClient>("A", calls);
    const auto b = std::make_shared<FakeClient>("B", calls);
    a->onOpen = b->onOpen = [] { return -1; };
    const auto server = JackServer::start(runtime);
    EXPECT_EQ(server->add(*a), -1);
    EXPECT_EQ(server->add(*b), -1);
    EXPECT_EQ(calls.taken(), (std::vector<std::string>{"A opens", "B opens"}));

    Bell secondAttempt;
    server->run(
        [&] {
            a->onOpen = [&a] {
                a->isLost = true; // the server has died again
                return 0;
            };
            b->onOpen = [&secondAttempt] {
                secondAttempt.ring();
                return -1;
            };
        },
        seconds(20));
    secondAttempt.wait();
    EXPECT_EQ(calls.taken(), (std::vector<std::string>{"A opens", "A closes", "B opens"}));
    EXPECT_TRUE(server->remove(a));
    EXPECT_TRUE(server->remove(b));
}

TEST(JackServerTest, OpensAClientThatNeverRanAgainAndTheNextOneOnceItRuns) {
    RunLoop loop;
    RealRuntime runtime(loop);
    Calls calls;
    Bell bothAreOpen;
    const auto a = std::make_shared<FakeClient>("A", calls);
    const auto b = std::make_shared<FakeClient>("B", calls);
    a->isRunning = false;
    b->onOpen = [] { return -1; };
    const auto server = JackServer::start(runtime);
    EXPECT_EQ(server->add(*a), 0);
    EXPECT_EQ(server->add(*b), -1);
    server->run(
        [&] {
            a->onOpen = [&a] {
                a->isRunning = true;
                return 0;
            };
            b->onOpen = [&bothAreOpen] {
                bothAreOpen.ring();
                return 0;
            };
        },
        seconds(20));
    bothAreOpen.wait();
    EXPECT_EQ(calls.taken(), (std::vector<std::string>{"A opens", "B opens", "A closes", "A opens", "B opens"}));
    EXPECT_TRUE(server->remove(a));
    EXPECT_TRUE(server->remove(b));
}

TEST(JackServerTest, OpensAClientAgainThatTheServerNoLongerWakes) {
    RunLoop loop;
    RealRuntime runtime(loop);
    Calls calls;
    Bell openAgain;
    const auto a = std::make_shared<FakeClient>("A", calls);
    const auto b = std::make_shared<FakeClient>("B", calls);
    const auto server = JackServer::start(runtime);
    EXPECT_EQ(server->add(*a), 0);
    EXPECT_EQ(server->add(*b), 0);
    server->run(
        [&] {
            b->isWoken = false;
            b->onOpen = [&] {
                b->isWoken = true;
                openAgain.ring();
                return 0;
            };
        },
        seconds(20));
    openAgain.wait();
    EXPECT_EQ(calls.taken(), (std::vector<std::string>{"A opens", "B opens", "B asks", "B closes", "B opens"}));
    EXPECT_TRUE(server->remove(a));
    EXPECT_TRUE(server->remove(b));
}

TEST(JackServerTest, LeavesAClientOpenThatStoodStillUntilTheServerAnswered) {
    RunLoop loop;
    RealRuntime runtime(loop);
    Calls calls;
    Bell asked;
    Bell goOn;
    const auto a = std::make_shared<FakeClient>("A", calls);
    const auto server = JackServer::start(runtime);
    EXPECT_EQ(server->add(*a), 0);
    server->run(
        [&] {
            a->isWoken = false;
            a->onAsk = [&] {
                asked.ring();
                goOn.wait();
                a->isWoken = true;
            };
        },
        seconds(20));
    asked.wait();
    goOn.ring();
    runtime.sleepFor(seconds(2.5));
    EXPECT_EQ(calls.taken(), (std::vector<std::string>{"A opens", "A asks"}));
    EXPECT_TRUE(server->remove(a));
}

// What the server thread tells, in order.
class Told {
public:
    std::function<void(bool)> listener() {
        return [this](bool isThere) {
            calls.note(isThere ? "there" : "lost");
            news.ring();
        };
    }
    std::string next() {
        while (waiting.empty()) {
            news.wait();
            for (std::string& call : calls.taken())
                waiting.push_back(std::move(call));
        }
        std::string first = std::move(waiting.front());
        waiting.pop_front();
        return first;
    }

private:
    Calls calls;
    Bell news;
    std::deque<std::string> waiting;
};

TEST(JackServerTest, TellsOnceThatTheServerIsLostAndOnceThatAllClientsRunAgain) {
    ::setenv("JACK_DEFAULT_SERVER", "lumbrine-absent", 1);
    RunLoop loop;
    RealRuntime runtime(loop);
    Calls calls;
    Told told;
    const auto a = std::make_shared<FakeClient>("A", calls);
    const auto b = std::make_shared<FakeClient>("B", calls);
    const auto server = JackServer::start(runtime);
    server->watch(told.listener());
    EXPECT_EQ(told.next(), "lost");
    EXPECT_EQ(server->add(*a), 0);
    EXPECT_EQ(server->add(*b), 0);
    EXPECT_EQ(told.next(), "there");

    server->run([&] { a->isLost = b->isLost = true; }, seconds(20));
    server->look();
    EXPECT_EQ(told.next(), "lost");
    EXPECT_EQ(told.next(), "there");
    EXPECT_TRUE(server->remove(a));
    EXPECT_TRUE(server->remove(b));
}

TEST(JackServerTest, WaitsLimitedTimeForAHangingLibraryAndDoesTheCallsLater) {
    RunLoop loop;
    RealRuntime runtime(loop);
    Calls calls;
    Bell goOn;
    const auto a = std::make_shared<FakeClient>("A", calls);
    a->onOpen = [&goOn] {
        goOn.wait();
        return 0;
    };
    const auto server = JackServer::start(runtime);
    EXPECT_EQ(server->add(*a), -ETIMEDOUT);
    const TimePoint before = runtime.now();
    EXPECT_FALSE(server->remove(a));
    EXPECT_LT(runtime.now() - before, JackServer::closingTime); // it is known to hang
    goOn.ring();
    Bell removed;
    server->run([&removed] { removed.ring(); }, seconds(20));
    removed.wait();
    EXPECT_EQ(calls.taken(), (std::vector<std::string>{"A opens", "A closes"}));
}

TEST(JackServerTest, EndsWhileTheLibraryHangsAndIsGoneWhenThatComesBack) {
    RunLoop loop;
    RealRuntime runtime(loop);
    Calls calls;
    Bell goOn;
    auto a = std::make_shared<FakeClient>("A", calls);
    a->onOpen = [&goOn] {
        goOn.wait();
        return 0;
    };
    auto server = JackServer::start(runtime);
    EXPECT_EQ(server->add(*a), -ETIMEDOUT);
    const std::weak_ptr<FakeClient> last = a;
    const TimePoint before = runtime.now();
    EXPECT_FALSE(server->remove(std::move(a)));
    server.reset();
    EXPECT_LT(runtime.now() - before, seconds(1));
    EXPECT_FALSE(last.expired());
    goOn.ring();
    while (!last.expired())
        runtime.sleepFor(seconds(0.001));
    EXPECT_EQ(calls.taken(), (std::vector<std::string>{"A opens", "A closes"}));
}

} // namespace
} // namespace lumbrine
