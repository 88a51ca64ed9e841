// Threads that wait until everybody rests, and a main thread that goes on last.
#include "platform/virtual/virtual_runtime.h"

namespace lumbrine {
namespace {

using namespace std::chrono_literals;
using Turns = VirtualRuntime::Options::Turns;

TEST(VirtualRest, LastsUntilNobodyElseCanGoOnAtThatInstant) {
    VirtualRuntime runtime({.turns = Turns::mainLast});
    std::string history;
    runtime.background(Priority::normal, [&] {
        runtime.sleepFor(10ms);
        runtime.rest();
        history += " rested";
    });
    runtime.background(Priority::normal, [&] {
        runtime.sleepFor(10ms);
        runtime.syncMain([&] { history += " main"; });
        history += " other";
    });
    runtime.postMainAfter(10ms, [&] { history += " timer"; });
    runtime.postMainAfter(11ms, [&] { history += " later"; });

    runtime.runFor(1s);

    EXPECT_EQ(history, " timer main other rested later");
}

TEST(VirtualRest, EndsOneByOneInTheOrderOfTheNumbers) {
    VirtualRuntime runtime;
    std::string history;
    for (const std::uint64_t number : {7U, 2U, 5U})
        runtime.background(Priority::normal, [&, number] {
            runtime.rest(number);
            history += std::to_string(number);
            runtime.sleepFor(0s);
            if (number == 2) runtime.rest(3);
            if (number == 2) history += "3";
        });

    runtime.runFor(1s);

    EXPECT_EQ(history, "2357");
}

TEST(VirtualRest, EndsWithTheRuntime) {
    bool rested = false;
    {
        VirtualRuntime runtime;
        runtime.background(Priority::normal, [&] {
            runtime.sleepFor(1s);
            runtime.rest();
            rested = true;
        });
        runtime.runFor(500ms);
    }
    EXPECT_TRUE(rested);
}

TEST(VirtualTurns, MainLastLetsEveryOtherThreadGoFirst) {
    VirtualRuntime runtime({.turns = Turns::mainLast});
    std::string history;
    const auto queue = runtime.serialQueue("queue", Priority::normal);
    runtime.background(Priority::normal, [&] {
        runtime.postMain([&] { history += " main"; });
        queue->post([&] { history += " queue"; });
    });

    runtime.runFor(1s);

    EXPECT_EQ(history, " queue main");
}

} // namespace
} // namespace lumbrine
