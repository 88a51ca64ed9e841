// What fails, how it is told, and what is tried again.
#include "ptsl/testing/service_frames.h"
#include "tests/ptsl_client/envelope_service.h"

#include <cerrno>

namespace lumbrine::service {
namespace {

using namespace std::chrono_literals;
using SystemCall = VirtualStreams::Call;
using testing::ElementsAre;

class ClientFailures : public ClientTest {
protected:
    // Every call is answered with these frames on its own stream.
    void answerWith(std::function<Bytes(std::uint32_t stream)> frames) {
        scripted.answer = [frames = std::move(frames)](ScriptedService::Call& call) {
            call.line.send(frames(call.stream));
        };
    }

    Duration now() const { return runtime.now().time_since_epoch(); }

    static Texts transport(const std::string& english, const std::string& japanese) {
        return {"PTSL transport error: " + english, "PTSL 通信エラー: " + japanese};
    }
};

TEST_F(ClientFailures, AreRefusalsOfTheServiceInItsOwnWords) {
    const std::string words = R"({"errors":[{"command_error_type":138,"command_error_message":"busy"}]})";
    answer(trackListCommand, failure(words));
    EXPECT_EQ(textsOfTrackList(), Texts("PTSL command failed: " + words, "PTSL コマンド失敗: " + words));
}

TEST_F(ClientFailures, AreRefusalsWithoutWords) {
    answer(trackListCommand, failure(""));
    EXPECT_EQ(textsOfTrackList(), Texts("PTSL command failed: unknown reason", "PTSL コマンド失敗: 理由不明"));
}

TEST_F(ClientFailures, AreRefusalsInOneLineHoweverLongTheyAre) {
    answer(trackListCommand, failure("one\ntwo\r\x1B" + std::string(3'000'000, 'x')));
    const Texts told = textsOfTrackList();
    EXPECT_THAT(told.first, testing::StartsWith("PTSL command failed: one two  xxx"));
    EXPECT_LE(told.first.size(), 500U);
}

TEST_F(ClientFailures, AreAlsoAnswersThatAreNoResult) {
    const Texts words("PTSL gave no result yet", "PTSL の結果がまだ出ていない");
    for (const std::uint64_t status : {0u, 1u, 2u, 5u}) {
        answer(trackListCommand, failure("", status));
        EXPECT_EQ(textsOfTrackList(), words) << status;
        answer(muteCommand, failure("", status));
        EXPECT_EQ(verdictOn(client.setMute({"Kick"}, true).error()), Verdict::unknown) << status;
    }
    answer(trackListCommand, reply(""));
    EXPECT_EQ(textsOfTrackList(), words);
    answer(muteCommand, reply(""));
    EXPECT_TRUE(client.setMute({"Kick"}, true));
}

TEST_F(ClientFailures, AreNotTriedAgainWhenNothingRuns) {
    streams.fail(SystemCall::connect, ECONNREFUSED, 1);
    EXPECT_EQ(errorOf(client.trackList()), "Cannot reach Pro Tools' PTSL (not running or disabled)");
    EXPECT_TRUE(scripted.received.empty());
    EXPECT_TRUE(client.trackList());
    streams.stopListening(ScriptedService::port);
    EXPECT_EQ(textsOfTrackList(), Texts("Cannot reach Pro Tools' PTSL (not running or disabled)",
                                        "Pro Tools の PTSL に繋がらない (未起動か無効)"));
}

TEST_F(ClientFailures, OfTransportAreTriedOnceMoreOverANewConnection) {
    ASSERT_TRUE(client.trackList());
    streams.fail(SystemCall::receive, ECONNRESET, 1);
    EXPECT_TRUE(client.trackList());
    EXPECT_EQ(scripted.received.size(), 2u);
    EXPECT_EQ(streams.openCount(), 1u);
    EXPECT_EQ(scripted.frames(2).at(2).stream, 1u);
    // The request reached the service both times.
    EXPECT_THAT(scripted.commands(),
                ElementsAre(registerCommand, trackListCommand, trackListCommand, trackListCommand));
}

TEST_F(ClientFailures, OfTransportAreReportedWhenTheSecondAttemptFailsToo) {
    ASSERT_TRUE(client.trackList());
    streams.fail(SystemCall::receive, ECONNRESET, 1);
    scripted.answer = [](ScriptedService::Call& call) {
        if (call.connection == 2) call.line.send(rstStream(call.stream));
    };
    EXPECT_EQ(errorOf(client.trackList()), "PTSL transport error: stream was reset");
    EXPECT_EQ(scripted.received.size(), 2u);
    EXPECT_EQ(streams.openCount(), 0u);
}

TEST_F(ClientFailures, OfTheSecondConnectionSayThatNothingRuns) {
    ASSERT_TRUE(client.trackList());
    streams.stopListening(ScriptedService::port);
    streams.fail(SystemCall::receive, ECONNRESET, 1);
    EXPECT_EQ(errorOf(client.trackList()), "Cannot reach Pro Tools' PTSL (not running or disabled)");
}

TEST_F(ClientFailures, LeaveTheNextCommandAFreshConnection) {
    answerWith([](std::uint32_t) { return goaway(); });
    EXPECT_FALSE(client.trackList());
    EXPECT_EQ(streams.openCount(), 0u);
    EXPECT_EQ(scripted.received.size(), 2u);
    EXPECT_EQ(scripted.frames(2).at(2).stream, 1u);
}

// The service may have carried it out, and by now somebody may want the opposite.
TEST_F(ClientFailures, OfSettersAreNotTriedAgain) {
    ASSERT_TRUE(client.prepare());
    for (const auto& setter :
         std::vector<std::function<bool()>>{[&] { return client.setMute({"Kick"}, true).has_value(); },
                                            [&] { return client.setSolo({"Kick"}, true).has_value(); },
                                            [&] { return client.setInputMonitor("Kick", true).has_value(); }}) {
        const std::size_t before = scripted.requests.size();
        streams.fail(SystemCall::receive, ECONNRESET, 1);
        EXPECT_FALSE(setter());
        EXPECT_EQ(streams.openCount(), 0u);
        EXPECT_EQ(scripted.requests.size(), before + 1);
        EXPECT_TRUE(setter());
    }
}

TEST_F(ClientFailures, AreMalformedResponsesTriedOnceMore) {
    const auto malformed = [](const std::string& english, const std::string& japanese) {
        return Texts("PTSL malformed response: " + english, "PTSL 応答が壊れている: " + japanese);
    };
    answerWith([](std::uint32_t stream) { return data(stream, {0, 0, 0, 0}, 0x01); });
    EXPECT_EQ(textsOfTrackList(), malformed("gRPC frame too short", "gRPC 枠が短すぎる"));
    EXPECT_EQ(scripted.callCount, 4u);
    answerWith([](std::uint32_t stream) { return data(stream, {1, 0, 0, 0, 0}, 0x01); });
    EXPECT_EQ(textsOfTrackList(), malformed("compressed responses not supported", "圧縮された応答は未対応"));
    answerWith([](std::uint32_t stream) { return data(stream, {0, 0, 0, 0, 1}, 0x01); });
    EXPECT_EQ(textsOfTrackList(), malformed("gRPC body incomplete", "gRPC 本体が足りない"));
}

TEST_F(ClientFailures, OfTheWireAreReportedInBothLanguages) {
    answerWith([](std::uint32_t stream) { return rstStream(stream); });
    EXPECT_EQ(textsOfTrackList(), transport("stream was reset", "ストリームがリセットされた"));
    answerWith([](std::uint32_t) { return goaway(); });
    EXPECT_EQ(textsOfTrackList(), transport("server sent GOAWAY", "サーバが GOAWAY を送った"));
    answerWith([](std::uint32_t stream) { return trailers(stream); });
    EXPECT_EQ(textsOfTrackList(), transport("stream closed without a response body (gRPC error)",
                                            "応答本体なしでストリームが閉じた (gRPC エラー)"));
    scripted.answer = [](ScriptedService::Call& call) { call.line.finish(); };
    EXPECT_EQ(textsOfTrackList(), transport("connection lost", "接続が切れた"));
    scripted.answer = [](ScriptedService::Call& call) { call.line.reset(); };
    const std::string number = std::to_string(ECONNRESET);
    EXPECT_EQ(textsOfTrackList(), transport("recv failed errno=" + number, "recv 失敗 errno=" + number));
    scripted.greet = [](VirtualLine& line) { line.reset(); };
    EXPECT_EQ(textsOfTrackList(), transport("send failed errno=" + number, "send 失敗 errno=" + number));
}

TEST_F(ClientFailures, OfASilentServiceTakeSixSeconds) {
    scripted.answer = nullptr;
    EXPECT_EQ(errorOf(client.trackList()), "PTSL response timed out");
    EXPECT_EQ(now(), 6s);
    EXPECT_EQ(textsOfTrackList(), Texts("PTSL response timed out", "PTSL の応答待ちがタイムアウト"));
}

struct FailingCommand {
    SystemCall call;
    int error;
    std::string english;
    std::string japanese;
};

TEST_F(ClientFailures, OfEachSystemCallHealOnceAndAreReportedWhenTheyStay) {
    const auto withNumber = [](SystemCall call, int error, const std::string& what) {
        const std::string number = " errno=" + std::to_string(error);
        return FailingCommand{call, error, what + " failed" + number, what + " 失敗" + number};
    };
    const std::vector<FailingCommand> all{
        {SystemCall::open, EMFILE, "socket() failed", "socket() 失敗"},
        withNumber(SystemCall::connect, ENETDOWN, "connect()"),
        withNumber(SystemCall::setReceiveTimeout, EINVAL, "connect()"),
        withNumber(SystemCall::setSendTimeout, EINVAL, "connect()"),
        withNumber(SystemCall::send, EPIPE, "send"),
        withNumber(SystemCall::receive, EIO, "recv"),
    };
    for (const FailingCommand& failing : all) {
        PTSLClient fresh(runtime, streams, json, Bilingual(false), "Tarnwick", "Lumbrine");
        streams.fail(failing.call, failing.error, 1);
        EXPECT_TRUE(fresh.trackList()) << failing.english;
        streams.fail(failing.call, failing.error);
        EXPECT_EQ(textsOfTrackList(), transport(failing.english, failing.japanese));
        EXPECT_EQ(streams.openCount(), 1u);
        streams.fail(failing.call, 0);
        EXPECT_TRUE(fresh.trackList()) << failing.english;
    }
    EXPECT_EQ(streams.openCount(), 0u);
}

TEST_F(ClientFailures, NeverHoldUpACommandBeyondItsBound) {
    int refused = 0;
    answer(trackListCommand, failure("unknown session"));
    scripted.answer = [&, usual = scripted.answer](ScriptedService::Call& call) {
        // Every other attempt drips to the last moment, the one after it succeeds as late as it can.
        if (call.number % 2 == 1) return call.line.drip(Bytes(100, 0xFF), 900ms);
        runtime.backgroundAfter(2999ms, [&, line = call.line, call]() mutable {
            ++refused;
            ScriptedService::Call late{line, call.stream, call.message, call.number, call.connection};
            usual(late);
        });
    };
    EXPECT_EQ(errorOf(client.trackList()), "PTSL command failed: unknown session");
    EXPECT_EQ(refused, 4);
    EXPECT_EQ(now(), 4 * (6s + 2999ms));
    EXPECT_LE(now(), 120s);
}

} // namespace
} // namespace lumbrine::service
