#include "base/testing/segmentations.h"
#include "simulator/testing/grpc_conversation.h"
#include "simulator/wire/grpc_connection.h"

namespace lumbrine::wire {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class GrpcConnectionTest : public testing::Test {
protected:
    // Both sides have said their settings; only the service's are not acknowledged.
    void greet(const Bytes& settings = {}) { say(greeting(settings)); }
    void acknowledge() { say(frameBytes(NGHTTP2_SETTINGS, NGHTTP2_FLAG_ACK, 0)); }

    std::vector<std::string> say(const Bytes& bytes) {
        connection.receive(bytes);
        return heard();
    }

    std::vector<std::string> reply(std::int32_t stream, std::size_t size) {
        connection.reply(stream, Bytes(size));
        return heard();
    }

    std::vector<std::string> heard() { return listener.told(connection.takeOutput()); }

    GrpcConnection connection;
    Listener listener;
};

// What gRPC's official server announces: windows and frames of 4,194,303 bytes, header lists of 8,192.
TEST_F(GrpcConnectionTest, SaysFirstWhatTheOfficialServerSaysFirst) {
    EXPECT_THAT(heard(),
                ElementsAre("SETTINGS 0004003fffff0005003fffff000600002000fe0300000001", "WINDOW_UPDATE 003f0000"));
    EXPECT_THAT(say(greeting()), ElementsAre("SETTINGS +1"));
}

TEST_F(GrpcConnectionTest, TakesACallAndAnswersItHoweverItArrives) {
    Bytes conversation = greeting();
    append(conversation, callBytes(1, "hello"));
    for (const auto& parts : segmentationsOf(conversation)) {
        GrpcConnection fresh;
        fresh.takeOutput();
        for (const Bytes& part : parts)
            fresh.receive(part);
        const auto calls = fresh.takeCalls();
        ASSERT_THAT(calls, SizeIs(1));
        EXPECT_EQ(calls[0].stream, 1);
        EXPECT_EQ(calls[0].path, "/ptsl.PTSL/SendGrpcRequest");
        EXPECT_EQ(calls[0].message, (Bytes{'h', 'e', 'l', 'l', 'o'}));
        fresh.reply(1, Bytes{'y', 'o'});
        EXPECT_THAT(Listener().told(fresh.takeOutput()),
                    ElementsAre("SETTINGS +1", "PING 0000000000000000", "WINDOW_UPDATE 0000000a",
                                "HEADERS 1 +4 :status=200 content-type=application/grpc", "DATA 1 (7)",
                                "HEADERS 1 +5 grpc-status=0"));
        EXPECT_FALSE(fresh.isOver());
    }
}

TEST_F(GrpcConnectionTest, ServesSeveralCallsAtOnce) {
    greet();
    say(callBytes(1, "a"));
    say(callBytes(3, "b"));
    EXPECT_THAT(connection.takeCalls(), SizeIs(2));
    EXPECT_EQ(reply(3, 1).back(), "HEADERS 3 +5 grpc-status=0");
    EXPECT_EQ(reply(1, 1).back(), "HEADERS 1 +5 grpc-status=0");
}

TEST_F(GrpcConnectionTest, SendsNoMoreThanTheClientsWindowsLetThrough) {
    greet(settingOf(NGHTTP2_SETTINGS_INITIAL_WINDOW_SIZE, 20'000));
    say(callBytes(1, ""));
    EXPECT_THAT(reply(1, 24'995), ElementsAre(HasSubstr("HEADERS 1 +4"), "DATA 1 (16384)", "DATA 1 (3616)"));
    EXPECT_THAT(say(frameBytes(NGHTTP2_WINDOW_UPDATE, 0, 1, bigEndian32(30'000))),
                ElementsAre("DATA 1 (5000)", "HEADERS 1 +5 grpc-status=0"));
}

TEST_F(GrpcConnectionTest, DropsACallThatTheClientGivesUp) {
    greet();
    say(callBytes(1, "a"));
    say(frameBytes(NGHTTP2_RST_STREAM, 0, 1, bigEndian32(NGHTTP2_CANCEL)));
    EXPECT_THAT(reply(1, 10), IsEmpty());
    EXPECT_FALSE(connection.isOver());
}

TEST_F(GrpcConnectionTest, TakesNoLongFrameBeforeItsSettingsAreAcknowledged) {
    greet();
    say(callBytes(1, std::string(16'379, 'x')));
    EXPECT_THAT(connection.takeCalls(), SizeIs(1));
    EXPECT_THAT(say(callBytes(3, std::string(16'380, 'x'))), ElementsAre(HasSubstr("GOAWAY 0000000300000006")));
    EXPECT_THAT(connection.takeCalls(), IsEmpty());
    EXPECT_TRUE(connection.isOver());
}

TEST_F(GrpcConnectionTest, TakesLongFramesOnceItsSettingsAreAcknowledged) {
    greet();
    acknowledge();
    const std::string longest(4'194'303 - 5, 'x');
    say(callBytes(1, longest));
    const auto calls = connection.takeCalls();
    ASSERT_THAT(calls, SizeIs(1));
    EXPECT_EQ(calls[0].message.size(), longest.size());
}

TEST_F(GrpcConnectionTest, FailsACallThatIsNoneOfGrpc) {
    greet();
    Bytes get = requestBlock();
    get[0] = 0x82;
    Bytes withoutTe = requestBlock();
    withoutTe.resize(withoutTe.size() - sizeof "\0\2te\10trailers" + 1);
    std::uint32_t stream = 1;
    for (const Bytes& block : {requestBlock("/a", "text/html"), withoutTe, get}) {
        const auto output = say(callBytes(stream, "", block));
        EXPECT_EQ(output.back(), "HEADERS " + std::to_string(stream) +
                                     " +5 :status=200 content-type=application/grpc grpc-status=13 "
                                     "grpc-message=this is no gRPC request");
        stream += 2;
    }
    EXPECT_THAT(connection.takeCalls(), IsEmpty());
}

TEST_F(GrpcConnectionTest, FailsAMessageThatIsNotWhatItsPrefixSays) {
    greet();
    const std::vector<std::pair<Bytes, std::string>> messages{
        {{}, "13"},
        {{0, 0, 0, 0}, "13"},
        {{0, 0, 0, 0, 2, 'a'}, "13"},
        {{0, 0, 0, 0, 0, 'a'}, "13"},
        {{1, 0, 0, 0, 1, 'a'}, "12"},
    };
    std::uint32_t stream = 1;
    for (const auto& [message, status] : messages) {
        say(frameBytes(NGHTTP2_HEADERS, NGHTTP2_FLAG_END_HEADERS, stream, requestBlock()));
        const auto output = say(frameBytes(NGHTTP2_DATA, NGHTTP2_FLAG_END_STREAM, stream, message));
        EXPECT_THAT(output.back(), HasSubstr(" +5 "));
        EXPECT_THAT(output.back(), HasSubstr("grpc-status=" + status));
        stream += 2;
    }
    EXPECT_THAT(connection.takeCalls(), IsEmpty());
}

TEST_F(GrpcConnectionTest, EndsWhenTheClientSpeaksSomethingElse) {
    const std::string http1 = "GET / HTTP/1.1\r\nHost: a\r\n\r\n";
    say(Bytes(http1.begin(), http1.end()));
    EXPECT_TRUE(connection.isOver());
}

TEST_F(GrpcConnectionTest, EndsWhenTheClientBreaksTheProtocol) {
    greet();
    EXPECT_THAT(say(frameBytes(NGHTTP2_DATA, 0, 0, Bytes(1))), ElementsAre(HasSubstr("GOAWAY 0000000000000001")));
    EXPECT_TRUE(connection.isOver());
    EXPECT_THAT(say(callBytes(1, "late")), IsEmpty());
    EXPECT_THAT(connection.takeCalls(), IsEmpty());
}

TEST_F(GrpcConnectionTest, EndsByItselfWithAGoAway) {
    greet();
    say(callBytes(1, "a"));
    connection.goAway();
    EXPECT_THAT(heard(), ElementsAre("GOAWAY 0000000100000000"));
    EXPECT_TRUE(connection.isOver());
}

} // namespace
} // namespace lumbrine::wire
