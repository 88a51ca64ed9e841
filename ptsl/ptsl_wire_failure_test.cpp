// Each system call fails in turn, once and permanently.
#include "ptsl/testing/wire_test.h"

#include <cerrno>

namespace lumbrine {
namespace {

using SystemCall = VirtualStreams::Call;

struct Failing {
    std::string name;
    SystemCall call;
    int error;
    int after; // how many calls of this kind succeed before
    PTSLError english;
    PTSLError japanese;
};

void PrintTo(const Failing& failing, std::ostream* stream) {
    *stream << failing.name;
}

Failing transport(const std::string& name, SystemCall call, int error, int after, const std::string& english,
                  const std::string& japanese) {
    return {name, call, error, after, PTSLError::transport(english), PTSLError::transport(japanese)};
}

Failing withNumber(const std::string& name, SystemCall call, int error, int after, const std::string& what) {
    const std::string number = " errno=" + std::to_string(error);
    return transport(name, call, error, after, what + " failed" + number, what + " 失敗" + number);
}

Failing timedOut(const std::string& name, SystemCall call, int after) {
    return {name, call, EAGAIN, after, PTSLError::timedOut(), PTSLError::timedOut()};
}

Failing notRunning(const std::string& name, int error) {
    return {name, SystemCall::connect, error, 0, PTSLError::notRunning(), PTSLError::notRunning()};
}

std::vector<Failing> allFailures() {
    std::vector<Failing> all{
        transport("Open", SystemCall::open, EMFILE, 0, "socket() failed", "socket() 失敗"),
        notRunning("ConnectRefused", ECONNREFUSED),
        notRunning("ConnectUnreachable", EHOSTUNREACH),
        withNumber("Connect", SystemCall::connect, ENETDOWN, 0, "connect()"),
        withNumber("ConnectInterrupted", SystemCall::connect, EINTR, 0, "connect()"),
        withNumber("SetReceiveTimeout", SystemCall::setReceiveTimeout, EINVAL, 0, "connect()"),
        withNumber("SetSendTimeout", SystemCall::setSendTimeout, EDOM, 0, "connect()"),
        withNumber("Receive", SystemCall::receive, ECONNRESET, 0, "recv"),
        timedOut("ReceiveTimeout", SystemCall::receive, 0),
    };
    // Greeting, request, acknowledgement of the response's data.
    for (int after = 0; after < 3; ++after) {
        all.push_back(withNumber("Send" + std::to_string(after), SystemCall::send, EPIPE, after, "send"));
        all.push_back(timedOut("SendTimeout" + std::to_string(after), SystemCall::send, after));
    }
    return all;
}

class FailingCall : public WireTest, public testing::WithParamInterface<Failing> {
protected:
    bool leavesASocket() const { return GetParam().call == SystemCall::send || GetParam().call == SystemCall::receive; }
};

TEST_P(FailingCall, IsReportedOnceAndHealsWithAFreshConnection) {
    for (PTSLWire* each : {&wire, &japaneseWire}) {
        streams.fail(GetParam().call, GetParam().error, 1, GetParam().after);
        const auto result = each->call(path, Bytes{1});
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error(), each == &wire ? GetParam().english : GetParam().japanese);
        EXPECT_EQ(streams.openCount(), leavesASocket() ? 1u : 0u);
        each->close();
        EXPECT_EQ(each->call(path, Bytes{1}), (Bytes{0xCA, 0xFE}));
        each->close();
        EXPECT_EQ(streams.openCount(), 0u);
    }
}

TEST_P(FailingCall, IsReportedEveryTimeAndLeavesNothingOpen) {
    for (int i = 0; i < 5; ++i) {
        streams.fail(GetParam().call, GetParam().error, VirtualStreams::always, GetParam().after);
        EXPECT_EQ(errorOfCall(), GetParam().english);
        wire.close();
        EXPECT_EQ(streams.openCount(), 0u);
    }
    streams.fail(GetParam().call, 0);
    EXPECT_TRUE(call());
}

INSTANTIATE_TEST_SUITE_P(OfTheSystem, FailingCall, testing::ValuesIn(allFailures()),
                         [](const auto& param) { return param.param.name; });

TEST_F(WireTest, DoesWithoutOptionsThatOnlyMakeItQuicker) {
    for (const SystemCall call : {SystemCall::setNoDelay, SystemCall::setNoSignal})
        streams.fail(call, ENOPROTOOPT);
    EXPECT_TRUE(call());
}

TEST_F(WireTest, TriesAgainWhenACallIsInterrupted) {
    for (const SystemCall interrupted : {SystemCall::send, SystemCall::receive}) {
        for (int after = 0; after < 3; ++after) {
            wire.close();
            streams.fail(interrupted, EINTR, 2, after);
            EXPECT_EQ(call(), (Bytes{0xCA, 0xFE}));
        }
    }
}

TEST_F(WireTest, SaysWhenTheServiceEndsTheConnection) {
    scripted.answer = [](Call& got) {
        got.line.send(service::headers(got.stream));
        got.line.finish();
    };
    EXPECT_EQ(errorOfCall(), PTSLError::transport("connection lost"));
    const auto japanese = japaneseWire.call(path, Bytes{});
    ASSERT_FALSE(japanese);
    EXPECT_EQ(japanese.error(), PTSLError::transport("接続が切れた"));
}

TEST_F(WireTest, SaysWhenTheServiceBreaksTheConnection) {
    const std::string number = std::to_string(ECONNRESET);
    scripted.answer = [](Call& got) { got.line.reset(); };
    EXPECT_EQ(errorOfCall(), PTSLError::transport("recv failed errno=" + number));
    EXPECT_EQ(errorOfCall(), PTSLError::transport("send failed errno=" + number));
}

TEST_F(WireTest, EndsAtOnceWhenTheProgramEnds) {
    scripted.answer = nullptr;
    runtime.backgroundAfter(seconds(1), [this] { streams.shutDown(); });
    EXPECT_EQ(errorOfCall(), PTSLError::transport("connection lost"));
    wire.close();
    EXPECT_EQ(errorOfCall(), PTSLError::transport("socket() failed"));
    EXPECT_EQ(now(), seconds(1));
}

} // namespace
} // namespace lumbrine
