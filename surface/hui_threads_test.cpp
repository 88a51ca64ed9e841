#include "platform/virtual/virtual_runtime.h"
#include "surface/hui_engine.h"

#include <set>

namespace lumbrine {
namespace {

using Messages = std::vector<Bytes>;

// The messages on the wire when several threads send at once and each may lose its turn after every message. Each
// switch has equal zone and port numbers, so that a port shows which zone it belongs to.
Messages wireOf(std::uint64_t seed) {
    VirtualRuntime runtime({.seed = seed});
    const auto engine = std::make_shared<HUIEngine>(runtime, Bilingual(false));
    Messages wire;
    engine->log = [](const std::string&) {};
    engine->send = [&](ByteView message) {
        wire.emplace_back(message.begin(), message.end());
        runtime.yield("a message on the wire");
    };
    const auto inBackground = [&](auto act) {
        runtime.background(Priority::normal, [act] {
            for (int i = 0; i < 3; ++i)
                act(i);
        });
    };
    inBackground([&](int i) { engine->sendFader(1, i / 2.0); });
    inBackground([&](int i) { engine->sendFader(2, i / 2.0); });
    inBackground([&](int i) { engine->pressSwitch(3 + i, 3 + i); });
    inBackground([&](int i) { engine->switchEdge(11, 11, i % 2 == 0); });
    inBackground([&](int) { engine->touch(0); });
    inBackground([&](int) { engine->handleIncoming(Bytes{0x90, 0x00, 0x00}); });
    runtime.runFor(seconds(1));
    return wire;
}

bool belongTogether(const Bytes& first, const Bytes& second) {
    if (first[1] == 0x0F) return second[1] == 0x2F && (second[2] & 0x0F) == first[2];
    return second[1] == first[1] + 0x20;
}

TEST(HUIThreads, NeverPutAMessageBetweenTwoThatBelongTogether) {
    std::set<Messages> different;
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        Messages wire = wireOf(seed);
        different.insert(wire);
        // Only the answers to pings may stand anywhere.
        EXPECT_EQ(std::erase(wire, Bytes{0x90, 0x00, 0x7F}), 3u);
        ASSERT_EQ(wire.size(), 36u);
        for (std::size_t i = 0; i < wire.size(); i += 2)
            ASSERT_TRUE(belongTogether(wire[i], wire[i + 1])) << "seed " << seed << ", message " << i;
    }
    EXPECT_GT(different.size(), 200u);
}

TEST(HUIThreads, AnswerAPingWhileAnotherThreadSends) {
    bool between = false;
    for (std::uint64_t seed = 1; seed <= 300 && !between; ++seed) {
        const Messages wire = wireOf(seed);
        for (std::size_t i = 1; i + 1 < wire.size(); ++i)
            between |= wire[i][0] == 0x90 && wire[i - 1][0] == 0xB0 && wire[i + 1][0] == 0xB0 &&
                       wire[i - 1][1] < 0x10 && belongTogether(wire[i - 1], wire[i + 1]);
    }
    EXPECT_TRUE(between);
}

using Switch = std::pair<int, int>; // zone and port

std::set<Switch> downAtTheEndOf(const Messages& wire) {
    std::set<Switch> down;
    int zone = 0;
    for (const Bytes& message : wire) {
        if (message[1] == 0x0F) zone = message[2];
        if (message[1] != 0x2F) continue;
        const Switch pressed{zone, message[2] & 0x0F};
        if ((message[2] & 0x40) != 0)
            down.insert(pressed);
        else
            down.erase(pressed);
    }
    return down;
}

TEST(HUIThreads, LeaveNothingDownWhenOneLetsGoForGood) {
    std::set<std::size_t> lengths;
    for (std::uint64_t seed = 1; seed <= 100; ++seed) {
        VirtualRuntime runtime({.seed = seed});
        const auto engine = std::make_shared<HUIEngine>(runtime, Bilingual(false));
        Messages wire;
        engine->log = [](const std::string&) {};
        engine->send = [&](ByteView message) {
            wire.emplace_back(message.begin(), message.end());
            runtime.yield("a message on the wire");
        };
        for (int thread = 0; thread < 4; ++thread)
            runtime.background(Priority::normal, [&, thread] {
                engine->touch(thread);
                engine->pressSwitch(thread, hui::mutePort);
                engine->channelMove(thread);
            });
        runtime.background(Priority::normal, [&] { engine->letGoForGood(); });
        runtime.runFor(seconds(1));
        EXPECT_EQ(downAtTheEndOf(wire), std::set<Switch>{}) << "seed " << seed;
        lengths.insert(wire.size());
    }
    EXPECT_GT(lengths.size(), 5u);
}

} // namespace
} // namespace lumbrine
