// The scripting service on TCP in virtual time, tested by bytes only.
#include "platform/virtual/memory_midi.h"
#include "simulator/simulated_pro_tools.h"
#include "simulator/testing/grpc_conversation.h"
#include "simulator/testing/host_bench.h"
#include "simulator/testing/virtual_scripting.h"

#include <cerrno>

namespace lumbrine {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using namespace wire;

// A request with command 13 in its header and no body.
constexpr std::string_view readyCheck{"\x0A\x02\x10\x0D", 4};

class InProcessScriptingTest : public testing::Test {
protected:
    void start(const ScriptingOptions& scripting = {}) {
        SimulatorOptions options;
        options.scripting = scripting;
        proTools = std::make_unique<SimulatedProTools>(runtime, midi, options, numberedSession(4));
        service = std::make_unique<VirtualScripting>(runtime, streams, proTools->scripting());
    }

    // Connects, and drops the first bytes of the service. Returns 0 or an errno value.
    int connect() {
        fd = streams.open();
        streams.setReceiveTimeout(fd, seconds(1));
        const int error = streams.connect(fd, "127.0.0.1", 31416, seconds(1));
        if (error != 0) return -error;
        listener = std::make_unique<Listener>();
        streams.send(fd, greeting());
        hear();
        return 0;
    }

    // The pieces received within a second, and the end: 0 or an errno value.
    int hear() {
        pieces.clear();
        Bytes buffer(65'536);
        for (;;) {
            const int count = streams.receive(fd, buffer);
            if (count <= 0) return -count;
            pieces.emplace_back(buffer.begin(), buffer.begin() + count);
        }
    }

    std::vector<std::string> heard() {
        Bytes all;
        for (const Bytes& piece : pieces)
            append(all, piece);
        return listener->told(all);
    }

    // The answer to a call and the state of the connection after it: EAGAIN while it is open.
    int call(std::uint32_t stream, std::string_view message = readyCheck, const Bytes& block = requestBlock()) {
        streams.send(fd, callBytes(stream, message, block));
        return hear();
    }

    VirtualRuntime runtime;
    MemoryMIDI midi{runtime};
    VirtualStreams streams{runtime};
    std::unique_ptr<SimulatedProTools> proTools;
    std::unique_ptr<VirtualScripting> service;
    int fd = -1;
    std::vector<Bytes> pieces;
    std::unique_ptr<Listener> listener; // to the newest connection
};

TEST_F(InProcessScriptingTest, AnswersACall) {
    start();
    ASSERT_EQ(connect(), 0);
    EXPECT_EQ(call(1), EAGAIN);
    EXPECT_THAT(heard(), ElementsAre("PING 0000000000000000", "WINDOW_UPDATE 00000009",
                                     "HEADERS 1 +4 :status=200 content-type=application/grpc", "DATA 1 (39)",
                                     "HEADERS 1 +5 grpc-status=0"));
    EXPECT_EQ(call(3, readyCheck, requestBlock("/ptsl.PTSL/SendGrpcStreamingRequest")), EAGAIN);
    EXPECT_EQ(heard().back(), "HEADERS 3 +5 grpc-status=0");
}

TEST_F(InProcessScriptingTest, RefusesWhatItDoesNotOffer) {
    start();
    ASSERT_EQ(connect(), 0);
    call(1, readyCheck, requestBlock("/ptsl.PTSL/Other"));
    EXPECT_THAT(heard().back(), HasSubstr("grpc-status=12"));
    call(3, "\xFF");
    EXPECT_THAT(heard().back(), HasSubstr("grpc-status=13"));
    EXPECT_EQ(proTools->scripting().arrivals(), 0u);
}

TEST_F(InProcessScriptingTest, ClosesTheConnectionOfAClientThatBreaksTheProtocol) {
    start();
    ASSERT_EQ(connect(), 0);
    streams.send(fd, frameBytes(NGHTTP2_PING, 0, 0, Bytes(3)));
    EXPECT_EQ(hear(), 0);
    EXPECT_THAT(heard(), ElementsAre("GOAWAY 0000000000000006"));
}

TEST_F(InProcessScriptingTest, ResetsACall) {
    start();
    ASSERT_EQ(connect(), 0);
    proTools->scripting().wireFaults().next(WireFault::reset, 1);
    EXPECT_EQ(call(1), EAGAIN);
    EXPECT_EQ(heard().back(), "RST_STREAM 1 00000002");
    EXPECT_EQ(call(3), EAGAIN);
    EXPECT_EQ(heard().back(), "HEADERS 3 +5 grpc-status=0");
}

TEST_F(InProcessScriptingTest, EndsAConnectionWithGoAwayAndTakesTheNext) {
    start();
    ASSERT_EQ(connect(), 0);
    proTools->scripting().wireFaults().next(WireFault::goAway, 1);
    EXPECT_EQ(call(1), 0);
    EXPECT_EQ(heard().back(), "GOAWAY 0000000100000000");
    ASSERT_EQ(connect(), 0);
    EXPECT_EQ(call(1), EAGAIN);
}

TEST_F(InProcessScriptingTest, DiesInACallAndComesBack) {
    ScriptingOptions options;
    options.downTime = seconds(5);
    start(options);
    ASSERT_EQ(connect(), 0);
    const int other = fd;
    ASSERT_EQ(connect(), 0);
    proTools->scripting().wireFaults().next(WireFault::die, 1);
    const TimePoint begin = runtime.now();
    EXPECT_EQ(call(1), ECONNRESET);
    Bytes buffer(1);
    EXPECT_EQ(streams.receive(other, buffer), -ECONNRESET);
    EXPECT_EQ(connect(), ECONNREFUSED);
    runtime.runFor(begin + seconds(4.999) - runtime.now());
    EXPECT_EQ(connect(), ECONNREFUSED);
    runtime.runFor(seconds(0.001));
    EXPECT_EQ(connect(), 0);
    EXPECT_EQ(call(1), EAGAIN);
}

TEST_F(InProcessScriptingTest, EndsAllConnectionsBetweenCalls) {
    start();
    ASSERT_EQ(connect(), 0);
    service->goAway();
    EXPECT_EQ(hear(), 0);
    EXPECT_THAT(heard(), ElementsAre("GOAWAY 0000000000000000"));
    ASSERT_EQ(connect(), 0);
    service->die();
    EXPECT_EQ(hear(), ECONNRESET);
    EXPECT_EQ(connect(), ECONNREFUSED);
}

TEST_F(InProcessScriptingTest, AnswersInPiecesWhereThatIsChosen) {
    ScriptingOptions options;
    options.bytesAtOnce = 1;
    start(options);
    ASSERT_EQ(connect(), 0);
    call(1);
    EXPECT_EQ(heard().back(), "HEADERS 1 +5 grpc-status=0");
    for (const Bytes& piece : pieces)
        EXPECT_EQ(piece.size(), 1u);
}

TEST_F(InProcessScriptingTest, KeepsRegistrationsOfConnectionsApart) {
    start();
    const std::string body = R"({"company_name":"T","application_name":"L"})";
    std::string registration("\x0A\x02\x10\x46\x12", 5);
    registration += static_cast<char>(body.size());
    registration += body;
    std::vector<std::string> identifiers;
    for (int i = 0; i < 2; ++i) {
        ASSERT_EQ(connect(), 0);
        call(1, registration);
        Bytes all;
        for (const Bytes& piece : pieces)
            append(all, piece);
        const std::string text(all.begin(), all.end());
        const std::size_t at = text.find("session_id\":\"");
        ASSERT_NE(at, text.npos);
        identifiers.push_back(text.substr(at + 13, 36));
    }
    EXPECT_NE(identifiers[0], identifiers[1]);
}

TEST_F(InProcessScriptingTest, MayEndBeforeItsConnectionsAndBeforeItsAnswers) {
    start();
    ASSERT_EQ(connect(), 0);
    proTools->scripting().stall(seconds(1));
    streams.send(fd, callBytes(1, readyCheck));
    service.reset();
    EXPECT_EQ(hear(), ECONNRESET);
    EXPECT_EQ(streams.send(fd, Bytes{1}), -ECONNRESET);
    runtime.runFor(seconds(2));
    EXPECT_EQ(connect(), ECONNREFUSED);
}

TEST_F(InProcessScriptingTest, LosesAnAnswerWhoseConnectionIsClosed) {
    start();
    ASSERT_EQ(connect(), 0);
    proTools->scripting().stall(seconds(1));
    streams.send(fd, callBytes(1, readyCheck));
    streams.close(fd);
    runtime.runFor(seconds(2));
    EXPECT_EQ(proTools->scripting().answers(), 1u);
    EXPECT_EQ(streams.openCount(), 0u);
}

} // namespace
} // namespace lumbrine
