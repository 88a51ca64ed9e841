#include "base/testing/segmentations.h"
#include "simulator/testing/grpc_conversation.h"
#include "simulator/wire/grpc_connection.h"

namespace lumbrine::wire {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class GrpcConnectionTest : public testing::Test {
protected:
    // Both sides have said their settings, and what that brought is dropped.
    void greet(const Bytes& settings = {}) {
        connection.receive(greeting(settings));
        connection.takeOutput();
    }

    std::vector<std::string> say(const Bytes& bytes) {
        connection.receive(bytes);
        return told(connection.takeOutput());
    }

    std::vector<std::string> reply(std::uint32_t stream, std::size_t size) {
        connection.reply(stream, Bytes(size));
        return told(connection.takeOutput());
    }

    // The connection ends with this error, and hears nothing more.
    void expectEnd(const Bytes& bytes, ErrorCode error) {
        const auto output = say(bytes);
        ASSERT_FALSE(output.empty());
        EXPECT_TRUE(output.back().starts_with("GOAWAY")) << output.back();
        EXPECT_TRUE(output.back().ends_with(hexOf(bigEndian32(static_cast<std::uint32_t>(error))))) << output.back();
        EXPECT_TRUE(connection.isOver());
        EXPECT_THAT(say(callBytes(99, "late")), IsEmpty());
        EXPECT_THAT(connection.takeCalls(), IsEmpty());
    }

    GrpcConnection connection;
};

TEST_F(GrpcConnectionTest, SaysItsSettingsFirst) {
    EXPECT_THAT(told(connection.takeOutput()), ElementsAre("SETTINGS 000400400000", "WINDOW_UPDATE 00400000"));
    EXPECT_THAT(say(greeting()), ElementsAre("SETTINGS +1"));
}

TEST_F(GrpcConnectionTest, TakesACallAndAnswersItHoweverItArrives) {
    Bytes conversation = greeting();
    append(conversation, callBytes(1, "hello"));
    for (const auto& parts : segmentationsOf(conversation)) {
        GrpcConnection fresh;
        for (const Bytes& part : parts)
            fresh.receive(part);
        const auto calls = fresh.takeCalls();
        ASSERT_EQ(calls.size(), 1u);
        EXPECT_EQ(calls[0].stream, 1u);
        EXPECT_EQ(calls[0].path, "/ptsl.PTSL/SendGrpcRequest");
        EXPECT_EQ(calls[0].message, (Bytes{'h', 'e', 'l', 'l', 'o'}));
        fresh.reply(1, Bytes{'y', 'o'});
        EXPECT_THAT(told(fresh.takeOutput()),
                    ElementsAre("SETTINGS 000400400000", "WINDOW_UPDATE 00400000", "SETTINGS +1",
                                "WINDOW_UPDATE 0000000a", "PING 5a5a5a5a5a5a5a5a", "HEADERS 1 +4", "DATA 1 (7)",
                                "HEADERS 1 +5 grpc-status 0"));
        EXPECT_FALSE(fresh.isOver());
    }
}

TEST_F(GrpcConnectionTest, ServesOneCallAfterAnotherAndSeveralAtOnce) {
    greet();
    say(callBytes(1, "a"));
    say(callBytes(3, "b"));
    say(callBytes(7, "c"));
    EXPECT_EQ(connection.takeCalls().size(), 3u);
    EXPECT_THAT(reply(7, 1), ElementsAre("HEADERS 7 +4", "DATA 7 (6)", "HEADERS 7 +5 grpc-status 0"));
    EXPECT_THAT(reply(1, 0), ElementsAre("HEADERS 1 +4", "DATA 1 (5)", "HEADERS 1 +5 grpc-status 0"));
    EXPECT_THAT(reply(1, 1), IsEmpty()); // answered already
    EXPECT_THAT(reply(5, 1), IsEmpty()); // never asked
    EXPECT_THAT(reply(3, 1), ElementsAre("HEADERS 3 +4", "DATA 3 (6)", "HEADERS 3 +5 grpc-status 0"));
}

TEST_F(GrpcConnectionTest, TakesARequestInPiecesPaddedWithPriorityAndInSeveralBlocks) {
    greet();
    const Bytes block = requestBlock();
    Bytes payload{3, 0, 0, 0, 0, 16}; // three bytes of padding, a priority
    append(payload, Bytes(block.begin(), block.begin() + 10));
    append(payload, Bytes(3));
    say(frameBytes(FrameType::headers, flag::padded | flag::priority, 1, payload));
    say(frameBytes(FrameType::continuation, 0, 1, Bytes(block.begin() + 10, block.begin() + 20)));
    say(frameBytes(FrameType::continuation, flag::endHeaders, 1, Bytes(block.begin() + 20, block.end())));
    const Bytes message = grpcMessage("hello");
    Bytes padded{2};
    append(padded, Bytes(message.begin(), message.begin() + 4));
    append(padded, Bytes(2));
    EXPECT_THAT(say(frameBytes(FrameType::data, flag::padded, 1, padded)),
                ElementsAre("WINDOW_UPDATE 00000007", "WINDOW_UPDATE 1 00000007"));
    EXPECT_THAT(connection.takeCalls(), IsEmpty());
    say(frameBytes(FrameType::data, 0, 1, Bytes(message.begin() + 4, message.end())));
    EXPECT_THAT(say(frameBytes(FrameType::data, flag::endStream, 1)), ElementsAre("PING 5a5a5a5a5a5a5a5a"));
    const auto calls = connection.takeCalls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].message.size(), 5u);
}

TEST_F(GrpcConnectionTest, SendsALongReplyInFramesThatTheClientTakes) {
    greet();
    say(callBytes(1, ""));
    EXPECT_THAT(reply(1, 40'000), ElementsAre("HEADERS 1 +4", "DATA 1 (16384)", "DATA 1 (16384)", "DATA 1 (7237)",
                                              "HEADERS 1 +5 grpc-status 0"));
}

TEST_F(GrpcConnectionTest, SendsLongerFramesWhereTheClientTakesThem) {
    greet(settingOf(Setting::maxFrameSize, 30'000));
    say(callBytes(1, ""));
    EXPECT_THAT(reply(1, 40'000),
                ElementsAre("HEADERS 1 +4", "DATA 1 (30000)", "DATA 1 (10005)", "HEADERS 1 +5 grpc-status 0"));
}

TEST_F(GrpcConnectionTest, SendsNoMoreThanTheWindowsLetThrough) {
    greet(settingOf(Setting::initialWindowSize, 100));
    say(callBytes(1, ""));
    EXPECT_THAT(reply(1, 195), ElementsAre("HEADERS 1 +4", "DATA 1 (100)"));
    EXPECT_THAT(say(frameBytes(FrameType::windowUpdate, 0, 0, bigEndian32(1000))), IsEmpty());
    EXPECT_THAT(say(frameBytes(FrameType::windowUpdate, 0, 1, bigEndian32(30))), ElementsAre("DATA 1 (30)"));
    // A larger first window counts for streams that there are.
    EXPECT_THAT(say(frameBytes(FrameType::settings, 0, 0, settingOf(Setting::initialWindowSize, 150))),
                ElementsAre("SETTINGS +1", "DATA 1 (50)"));
    EXPECT_THAT(say(frameBytes(FrameType::windowUpdate, 0, 1, bigEndian32(30))),
                ElementsAre("DATA 1 (20)", "HEADERS 1 +5 grpc-status 0"));
}

TEST_F(GrpcConnectionTest, KeepsToTheWindowOfTheConnection) {
    greet(settingOf(Setting::initialWindowSize, 1'000'000));
    say(callBytes(1, ""));
    say(callBytes(3, ""));
    EXPECT_EQ(reply(1, 65'530).back(), "HEADERS 1 +5 grpc-status 0"); // exactly the window
    EXPECT_THAT(reply(3, 5), ElementsAre("HEADERS 3 +4"));
    EXPECT_THAT(say(frameBytes(FrameType::windowUpdate, 0, 0, bigEndian32(65'535))),
                ElementsAre("DATA 3 (10)", "HEADERS 3 +5 grpc-status 0"));
}

TEST_F(GrpcConnectionTest, AnswersPingsAndPassesOverWhatItNeedNotKnow) {
    greet();
    EXPECT_THAT(say(frameBytes(FrameType::ping, 0, 0, {1, 2, 3, 4, 5, 6, 7, 8})),
                ElementsAre("PING +1 0102030405060708"));
    EXPECT_THAT(say(frameBytes(FrameType::ping, flag::ack, 0, Bytes(8))), IsEmpty());
    EXPECT_THAT(say(frameBytes(FrameType::settings, flag::ack, 0)), IsEmpty());
    EXPECT_THAT(say(frameBytes(FrameType::priority, 0, 1, Bytes(5))), IsEmpty());
    EXPECT_THAT(say(frameBytes(FrameType::goAway, 0, 0, Bytes(8))), IsEmpty());
    EXPECT_THAT(say(frameBytes(static_cast<FrameType>(0x42), 0, 9, Bytes(5))), IsEmpty());
    EXPECT_FALSE(connection.isOver());
}

TEST_F(GrpcConnectionTest, DropsACallThatTheClientGivesUp) {
    greet();
    say(callBytes(1, "a"));
    say(frameBytes(FrameType::rstStream, 0, 1, bigEndian32(8)));
    EXPECT_THAT(reply(1, 10), IsEmpty());
    EXPECT_THAT(say(frameBytes(FrameType::windowUpdate, 0, 1, bigEndian32(5))), IsEmpty());
    EXPECT_FALSE(connection.isOver());
}

TEST_F(GrpcConnectionTest, FailsACallThatIsNoneOfGrpc) {
    greet();
    using enum FrameType;
    EXPECT_THAT(say(frameBytes(headers, flag::endHeaders, 1, requestBlock("/a", "text/html"))),
                ElementsAre("HEADERS 1 +5 grpc-status 13"));
    EXPECT_THAT(say(frameBytes(headers, flag::endHeaders, 3, requestBlock("/a", "application/grpc", "none"))),
                ElementsAre("HEADERS 3 +5 grpc-status 13"));
    Bytes get = requestBlock();
    get[0] = 0x82;
    EXPECT_THAT(say(frameBytes(headers, flag::endHeaders, 5, get)), ElementsAre("HEADERS 5 +5 grpc-status 13"));
    // What still comes of it is taken and dropped.
    EXPECT_THAT(say(frameBytes(data, flag::endStream, 5, Bytes(4))), ElementsAre("WINDOW_UPDATE 00000004"));
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
        say(frameBytes(FrameType::headers, flag::endHeaders, stream, requestBlock()));
        const auto output = say(frameBytes(FrameType::data, flag::endStream, stream, message));
        ASSERT_FALSE(output.empty());
        EXPECT_EQ(output.back(), "HEADERS " + std::to_string(stream) + " +5 grpc-status " + status);
        stream += 2;
    }
    EXPECT_THAT(say(frameBytes(FrameType::headers, flag::endHeaders | flag::endStream, stream, requestBlock())),
                ElementsAre("HEADERS 11 +5 grpc-status 13"));
    EXPECT_THAT(connection.takeCalls(), IsEmpty());
}

TEST_F(GrpcConnectionTest, FailsAMessageThatIsTooLong) {
    greet();
    say(frameBytes(FrameType::headers, flag::endHeaders, 1, requestBlock()));
    std::vector<std::string> output;
    for (int i = 0; i <= 256; ++i)
        output = say(frameBytes(FrameType::data, 0, 1, Bytes(16'384)));
    EXPECT_EQ(output.back(), "HEADERS 1 +5 grpc-status 8");
}

TEST_F(GrpcConnectionTest, EndsWhenTheClientSpeaksSomethingElse) {
    const std::string http1 = "GET / HTTP/1.1\r\nHost: a\r\n\r\n";
    expectEnd(Bytes(http1.begin(), http1.end()), ErrorCode::protocolError);
}

TEST_F(GrpcConnectionTest, EndsWhenTheClientDoesNotBeginWithItsSettings) {
    Bytes bytes(preface.begin(), preface.end());
    append(bytes, callBytes(1, "a"));
    expectEnd(bytes, ErrorCode::protocolError);
}

// What a client must not send once it is greeted, and how it is told.
TEST(GrpcConnection, EndsWhenTheClientBreaksTheProtocol) {
    const Bytes block = requestBlock();
    const Bytes whole = callBytes(1, "a");
    Bytes again = whole;
    append(again, frameBytes(FrameType::data, 0, 1, Bytes(1)));
    Bytes older = callBytes(3, "a");
    append(older, callBytes(1, "a"));
    Bytes interrupted = frameBytes(FrameType::headers, 0, 1, block);
    append(interrupted, frameBytes(FrameType::ping, 0, 0, Bytes(8)));
    Bytes otherStream = frameBytes(FrameType::headers, 0, 1, block);
    append(otherStream, frameBytes(FrameType::continuation, 0, 3, Bytes(1)));
    Bytes endless = frameBytes(FrameType::headers, 0, 1, block);
    for (int i = 0; i < 5; ++i)
        append(endless, frameBytes(FrameType::continuation, 0, 1, Bytes(16'384)));
    Bytes overflow = frameBytes(FrameType::headers, flag::endHeaders, 1, block);
    append(overflow, frameBytes(FrameType::windowUpdate, 0, 1, bigEndian32(0x7FFF'FFFF)));

    struct Case {
        std::string what;
        Bytes bytes;
        ErrorCode error;
    };
    using enum FrameType;
    using enum ErrorCode;
    const std::vector<Case> cases{
        {"a frame that is too long", frameBytes(data, 0, 1, Bytes(16'385)), frameSizeError},
        {"data on no stream", frameBytes(data, 0, 0, Bytes(1)), protocolError},
        {"data on a stream that is not open", frameBytes(data, 0, 1, Bytes(1)), protocolError},
        {"data after the end", again, streamClosed},
        {"padding beyond the end", frameBytes(headers, flag::padded | flag::endHeaders, 1, {9, 0x83}), protocolError},
        {"a priority that is cut off", frameBytes(headers, flag::priority, 1, Bytes(4)), protocolError},
        {"headers on a stream of ours", frameBytes(headers, flag::endHeaders, 2, block), protocolError},
        {"headers on no stream", frameBytes(headers, flag::endHeaders, 0, block), protocolError},
        {"a stream that is older", older, streamClosed},
        {"headers that cannot be read", frameBytes(headers, flag::endHeaders, 1, {0xBE}), compressionError},
        {"a block that is interrupted", interrupted, protocolError},
        {"a block that goes on elsewhere", otherStream, protocolError},
        {"a block without an end", endless, protocolError},
        {"a continuation of nothing", frameBytes(continuation, 0, 1, Bytes(1)), protocolError},
        {"a promise", frameBytes(pushPromise, 0, 1, Bytes(4)), protocolError},
        {"settings on a stream", frameBytes(settings, 0, 1), protocolError},
        {"settings that are cut off", frameBytes(settings, 0, 0, Bytes(5)), frameSizeError},
        {"too large a window", frameBytes(settings, 0, 0, settingOf(Setting::initialWindowSize, 0x8000'0000)),
         flowControlError},
        {"too small frames", frameBytes(settings, 0, 0, settingOf(Setting::maxFrameSize, 16'383)), protocolError},
        {"too large frames", frameBytes(settings, 0, 0, settingOf(Setting::maxFrameSize, 16'777'216)), protocolError},
        {"a ping of another size", frameBytes(ping, 0, 0, Bytes(7)), frameSizeError},
        {"a ping on a stream", frameBytes(ping, 0, 1, Bytes(8)), protocolError},
        {"a window update of another size", frameBytes(windowUpdate, 0, 0, Bytes(3)), frameSizeError},
        {"a window update of nothing", frameBytes(windowUpdate, 0, 0, Bytes(4)), protocolError},
        {"a window update on a stream to come", frameBytes(windowUpdate, 0, 5, bigEndian32(1)), protocolError},
        {"a window that overflows", frameBytes(windowUpdate, 0, 0, bigEndian32(0x7FFF'FFFF)), flowControlError},
        {"a stream's window that overflows", overflow, flowControlError},
    };
    for (const Case& wrong : cases) {
        GrpcConnection connection;
        connection.receive(greeting());
        connection.receive(wrong.bytes);
        const auto output = told(connection.takeOutput());
        EXPECT_TRUE(connection.isOver()) << wrong.what;
        EXPECT_TRUE(output.back().starts_with("GOAWAY")) << wrong.what << ": " << output.back();
        EXPECT_TRUE(output.back().ends_with(hexOf(bigEndian32(static_cast<std::uint32_t>(wrong.error)))))
            << wrong.what << ": " << output.back();
        connection.receive(callBytes(101, "late"));
        EXPECT_THAT(connection.takeOutput(), IsEmpty()) << wrong.what;
    }
}

} // namespace
} // namespace lumbrine::wire
