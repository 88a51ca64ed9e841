// Every call ends within its limits, whatever the service does.
#include "platform/virtual/null_platform.h"
#include "platform/virtual/still_runtime.h"
#include "ptsl/testing/wire_test.h"

#include <cerrno>

namespace lumbrine {
namespace {

using namespace service;
using namespace std::chrono_literals;

using WireDeadline = WireTest;

TEST_F(WireDeadline, EndsACallAfterThreeSecondsOfSilence) {
    scripted.answer = nullptr;
    EXPECT_EQ(errorOfCall(), PTSLError::timedOut());
    EXPECT_EQ(now(), 3s);
}

TEST_F(WireDeadline, AcceptsAResponseThatComesJustInTime) {
    scripted.answer = [](Call& got) { got.line.send(response(got.stream, {7}), 3s - 1ns); };
    EXPECT_EQ(call(), Bytes{7});
    scripted.answer = [](Call& got) { got.line.send(data(got.stream, body({8}), 0x01), 3s); };
    EXPECT_EQ(call(), Bytes{8});
    EXPECT_EQ(now(), 6s - 1ns);
}

TEST_F(WireDeadline, RefusesAResponseThatComesJustTooLate) {
    scripted.answer = [](Call& got) { got.line.send(response(got.stream, {7}), 3s + 1ns); };
    EXPECT_EQ(errorOfCall(), PTSLError::timedOut());
    EXPECT_EQ(now(), 3s);
}

TEST_F(WireDeadline, EndsACallBetweenFramesOnceThreeSecondsArePast) {
    scripted.answer = [](Call& got) {
        for (int i = 1; i <= 10; ++i)
            got.line.send(ping(1), i * 700ms);
    };
    EXPECT_EQ(errorOfCall(), PTSLError::timedOut());
    EXPECT_EQ(now(), 3500ms);
    EXPECT_EQ(scripted.framesOfType(6).size(), 5u);
}

TEST_F(WireDeadline, WaitsForThreeSecondsAfterEachSignOfLife) {
    scripted.answer = [](Call& got) { got.line.send(headers(got.stream), 2900ms); };
    EXPECT_EQ(errorOfCall(), PTSLError::timedOut());
    EXPECT_EQ(now(), 5900ms);
}

TEST_F(WireDeadline, EndsAFrameThatDripsThreeSecondsLater) {
    scripted.answer = [](Call& got) { got.line.drip(response(got.stream, Bytes(100)), 1s); };
    EXPECT_EQ(errorOfCall(), PTSLError::timedOut());
    EXPECT_EQ(now(), 6s);
}

TEST_F(WireDeadline, EndsAFrameThatDripsAndThenStops) {
    scripted.answer = [](Call& got) {
        Bytes frame = data(got.stream, Bytes(100), 1);
        frame.resize(11);
        got.line.drip(frame, 500ms);
    };
    EXPECT_EQ(errorOfCall(), PTSLError::timedOut());
    EXPECT_EQ(now(), 6s);
}

TEST_F(WireDeadline, LetsAFrameThatIsUnderWayBecomeWhole) {
    const Bytes last = data(1, body({7}), 0x01); // 15 bytes
    scripted.answer = [&](Call& got) { got.line.drip(last, 390ms); };
    EXPECT_EQ(call(), Bytes{7});
    EXPECT_EQ(now(), 5850ms);
}

TEST_F(WireDeadline, EndsACallWithTheFrameThatIsUnderWay) {
    scripted.answer = [](Call& got) { got.line.drip(joined({ping(1), response(got.stream, {7})}), 200ms); };
    EXPECT_EQ(errorOfCall(), PTSLError::timedOut());
    EXPECT_EQ(now(), 17 * 200ms);
}

TEST_F(WireDeadline, GivesTheNextCallItsFullTime) {
    scripted.answer = [](Call& got) {
        if (got.number == 1) got.line.drip(data(got.stream, body({7}), 0x01), 390ms);
    };
    EXPECT_EQ(call(), Bytes{7});
    EXPECT_EQ(errorOfCall(), PTSLError::timedOut());
    EXPECT_EQ(now(), 5850ms + 3s);
    scripted.answer = [](Call& got) { got.line.send(response(got.stream, {8}), 2999ms); };
    EXPECT_EQ(call(), Bytes{8});
}

TEST_F(WireDeadline, GivesACallItsFullTimeAfterAnyPause) {
    EXPECT_TRUE(call());
    runtime.sleepFor(60s);
    scripted.answer = [](Call& got) { got.line.send(response(got.stream, {7}), 2999ms); };
    EXPECT_EQ(call(), Bytes{7});
    EXPECT_EQ(now(), 60s + 2999ms);
    EXPECT_EQ(scripted.received.size(), 1u); // on the same connection
}

TEST_F(WireDeadline, OutlivesAFloodOfPings) {
    scripted.answer = [](Call& got) {
        for (int i = 0; i < 20'000; ++i)
            got.line.send(ping(static_cast<std::uint8_t>(i)), i * 200us);
    };
    EXPECT_EQ(errorOfCall(), PTSLError::timedOut());
    EXPECT_EQ(now(), 3s);
    EXPECT_EQ(scripted.received.at(0).size(), 24u + 21 + 13 + 9 + 79 + 9 + 6 + 15'001 * 17);
}

TEST_F(WireDeadline, OutlivesAFloodOfSettings) {
    scripted.answer = [](Call& got) {
        for (int i = 0; i < 20'000; ++i)
            got.line.send(settings(), i * 200us);
    };
    EXPECT_EQ(errorOfCall(), PTSLError::timedOut());
    EXPECT_EQ(now(), 3s);
}

TEST_F(WireDeadline, OutlivesAFloodThatTheServiceDoesNotLetItAnswer) {
    scripted.answer = [](Call& got) {
        got.line.stopReading();
        for (int i = 0; i < 10'000; ++i)
            got.line.send(ping(1), 1ms);
    };
    EXPECT_EQ(errorOfCall(), PTSLError::timedOut());
    EXPECT_EQ(now(), 1ms + 3s);
}

TEST_F(WireDeadline, EndsACallThatTheServiceDoesNotRead) {
    scripted.greet = [](VirtualLine& line) { line.stopReading(); };
    EXPECT_EQ(errorOfCall(Bytes(200'000)), PTSLError::timedOut());
    EXPECT_EQ(now(), 3s);
}

TEST_F(WireDeadline, EndsACallThatTheServiceReadsTooSlowly) {
    std::optional<VirtualLine> line;
    scripted.greet = [&](VirtualLine& greeted) {
        line = greeted;
        line->stopReading();
    };
    for (int i = 1; i < 10; ++i) {
        runtime.backgroundAfter(i * 2900ms, [&] {
            line->readAgain();
            line->stopReading();
        });
    }
    EXPECT_EQ(errorOfCall(Bytes(1'000'000)), PTSLError::timedOut());
    EXPECT_EQ(now(), 6s);
}

TEST_F(WireDeadline, GivesALaterCallAsLongToBeSent) {
    std::optional<VirtualLine> line;
    scripted.greet = [&](VirtualLine& greeted) { line = greeted; };
    EXPECT_TRUE(call());
    runtime.sleepFor(60s);
    line->stopReading();
    for (int i = 1; i < 10; ++i) {
        runtime.backgroundAfter(i * 2900ms, [&] {
            line->readAgain();
            line->stopReading();
        });
    }
    EXPECT_EQ(errorOfCall(Bytes(1'000'000)), PTSLError::timedOut());
    EXPECT_EQ(now(), 66s);
}

TEST_F(WireDeadline, BoundsACallThatIsHeldUpEverywhere) {
    streams.stopListening(ScriptedService::port);
    std::optional<VirtualLine> line;
    class Slow final : public StreamPeer {
        void received(ByteView) override {}
    };
    streams.listen(
        ScriptedService::port,
        [&](VirtualLine held) {
            line = held;
            held.stopReading();
            return std::make_unique<Slow>();
        },
        3s);
    // The request is taken at 8.9 s, 2.9 and 5.9 s after the connection; then the response drips.
    runtime.backgroundAfter(5900ms, [&] {
        line->readAgain();
        line->stopReading();
    });
    runtime.backgroundAfter(8800ms, [&] {
        line->readAgain();
        line->drip(Bytes(1000, 0xFF), 900ms);
    });
    EXPECT_EQ(errorOfCall(Bytes(3 * VirtualStreams::stalledCapacity - 1000)), PTSLError::timedOut());
    EXPECT_EQ(now(), 8800ms + 6s);
}

// Sockets whose every receive or send is interrupted after ten milliseconds.
class InterruptedSockets final : public NullStreams {
public:
    InterruptedSockets(StillRuntime& runtime, bool interruptsSends)
        : runtime(runtime), interruptsSends(interruptsSends) {}

    int connect(int, const std::string&, std::uint16_t, Duration) override { return 0; }
    int send(int, ByteView bytes) override { return interruptsSends ? interrupted() : static_cast<int>(bytes.size()); }
    int receive(int, std::span<std::uint8_t>) override { return interrupted(); }

private:
    int interrupted() {
        runtime.time += 10ms;
        return -EINTR;
    }

    StillRuntime& runtime;
    const bool interruptsSends;
};

TEST(WireDeadlineInterrupted, EndsACallThatIsInterruptedForEver) {
    for (const bool sendsToo : {false, true}) {
        StillRuntime runtime;
        InterruptedSockets sockets(runtime, sendsToo);
        PTSLWire wire(runtime, sockets, Bilingual(false), "127.0.0.1", 31416, 3.0);
        const auto result = wire.call("/x", Bytes{});
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error(), PTSLError::timedOut());
        EXPECT_EQ(runtime.time, TimePoint(6s));
    }
}

// The time-out of the socket cannot be changed after the request.
TEST_F(WireDeadline, EndsACallWhoseLastWaitCannotBeShortened) {
    scripted.answer = [this](Call& got) {
        streams.fail(VirtualStreams::Call::setReceiveTimeout, EINVAL);
        got.line.drip(response(got.stream, Bytes(100)), 1s);
    };
    EXPECT_EQ(errorOfCall(), PTSLError::timedOut());
    EXPECT_EQ(now(), 4s);
}

} // namespace
} // namespace lumbrine
