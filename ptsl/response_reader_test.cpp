#include "base/testing/segmentations.h"
#include "ptsl/response_reader.h"
#include "ptsl/testing/service_frames.h"

namespace lumbrine {
namespace {

using namespace service;

constexpr std::uint32_t stream = 5;

struct Played {
    std::vector<Bytes> answers;
    std::optional<std::expected<Bytes, PTSLError>> outcome;

    bool operator==(const Played&) const = default;
};

Played playPieces(const std::vector<Bytes>& pieces, Bilingual text = Bilingual(false)) {
    FrameReader frames;
    ResponseReader reader(stream, text);
    Played played;
    for (const Bytes& piece : pieces) {
        frames.append(piece);
        while (!played.outcome) {
            const auto frame = frames.next();
            if (!frame) break;
            auto step = reader.take(*frame);
            if (!step.answer.empty()) played.answers.push_back(std::move(step.answer));
            played.outcome = std::move(step.outcome);
        }
    }
    return played;
}

// The outcome of a response, which must be the same for every way to split its bytes.
Played play(const Bytes& fromService) {
    Played whole = playPieces({fromService});
    for (const auto& pieces : segmentationsOf(fromService))
        EXPECT_EQ(playPieces(pieces), whole);
    return whole;
}

Bytes messageOf(const Bytes& fromService) {
    const Played played = play(fromService);
    if (played.outcome && *played.outcome) return **played.outcome;
    ADD_FAILURE() << (played.outcome ? played.outcome->error().detail : "no outcome");
    return {};
}

// The error texts of a failure, in both languages.
std::pair<PTSLError, PTSLError> failureOf(const Bytes& fromService) {
    std::vector<PTSLError> errors;
    play(fromService);
    for (const bool isJa : {false, true}) {
        const Played played = playPieces({fromService}, Bilingual(isJa));
        const bool failed = played.outcome && !*played.outcome;
        EXPECT_TRUE(failed);
        errors.push_back(failed ? played.outcome->error() : PTSLError::timedOut());
    }
    return {errors[0], errors[1]};
}

using Errors = std::pair<PTSLError, PTSLError>;

Errors transportErrors(const std::string& english, const std::string& japanese) {
    return {PTSLError::transport(english), PTSLError::transport(japanese)};
}

TEST(Response, IsWhatStandsInTheData) {
    const Played played = play(response(stream, {1, 2, 3}));
    ASSERT_TRUE(played.outcome);
    EXPECT_EQ(*played.outcome, (Bytes{1, 2, 3}));
    EXPECT_EQ(played.answers, (std::vector<Bytes>{windowUpdate(0, 8)}));
}

TEST(Response, MayEndWithItsData) {
    EXPECT_EQ(messageOf(joined({headers(stream), data(stream, body({7}), 0x01)})), Bytes{7});
}

TEST(Response, MayEndWithAnEmptyFrameOfData) {
    const Played played = play(joined({headers(stream), data(stream, body({7})), data(stream, {}, 0x01)}));
    EXPECT_EQ(played.outcome, (std::expected<Bytes, PTSLError>(Bytes{7})));
    EXPECT_EQ(played.answers, (std::vector<Bytes>{windowUpdate(0, 6)}));
}

TEST(Response, IsJoinedFromSeveralFrames) {
    const Bytes whole = body({1, 2, 3, 4});
    Bytes frames = headers(stream);
    for (const std::uint8_t byte : whole)
        frames = joined({frames, data(stream, {byte})});
    const Played played = play(joined({frames, trailers(stream)}));
    ASSERT_TRUE(played.outcome);
    EXPECT_EQ(*played.outcome, (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(played.answers, std::vector<Bytes>(whole.size(), windowUpdate(0, 1)));
}

TEST(Response, MayBeAnEmptyMessage) {
    EXPECT_EQ(messageOf(response(stream, {})), Bytes{});
}

TEST(Response, LeavesWhatFollowsItAlone) {
    const Played played = playPieces({joined({response(stream, {1}), goaway()})});
    ASSERT_TRUE(played.outcome);
    EXPECT_EQ(*played.outcome, Bytes{1});
}

TEST(Response, IsNotWhatComesOnAnotherStream) {
    const Played played =
        play(joined({data(3, body({9}), 0x01), headers(3), trailers(3), rstStream(3), response(stream, {1})}));
    ASSERT_TRUE(played.outcome);
    EXPECT_EQ(*played.outcome, Bytes{1});
    EXPECT_EQ(played.answers, (std::vector<Bytes>{windowUpdate(0, 6), windowUpdate(0, 6)}));
}

TEST(Response, IsReadOnAStreamWithTheReservedBitSet) {
    EXPECT_EQ(messageOf(response(0x80000000 | stream, {1})), Bytes{1});
}

TEST(Response, ComesAfterSettingsThatAreAcknowledgedOnce) {
    const Played played = play(joined({settings(), settingsAck(), response(stream, {1})}));
    ASSERT_TRUE(played.outcome);
    EXPECT_EQ(*played.outcome, Bytes{1});
    EXPECT_EQ(played.answers, (std::vector<Bytes>{settingsAck(), windowUpdate(0, 6)}));
}

TEST(Response, ComesAfterPingsThatAreAnsweredWithTheirPayload) {
    const Played played = play(joined({ping(0xAB), ping(0xCD, 0x01), frame(6, 0, 0, {1}), response(stream, {1})}));
    EXPECT_EQ(played.answers,
              (std::vector<Bytes>{frame(6, 1, 0, Bytes(8, 0xAB)), frame(6, 1, 0, {1}), windowUpdate(0, 6)}));
}

TEST(Response, ComesAfterFramesThatMeanNothingToACall) {
    const Bytes ignored = joined({
        frame(2, 0, stream, {0, 0, 0, 0, 15}),   // PRIORITY
        frame(5, 4, stream, {0, 0, 0, 2, 0x88}), // PUSH_PROMISE
        windowUpdate(0, 1),
        windowUpdate(stream, 0x7FFFFFFF), // WINDOW_UPDATE, least and most
        windowUpdate(0, 0),
        frame(8, 0, 0),
        frame(8, 0, 0, {1}), // and malformed
        frame(1, 0x00, stream, {0x88}),
        frame(9, 0x04, stream),               // headers in two frames
        frame(0x0B, 0xFF, stream, {1, 2, 3}), // unknown types
        frame(0xFF, 0xFF, 0),
    });
    const Played played = play(joined({ignored, response(stream, {1})}));
    ASSERT_TRUE(played.outcome);
    EXPECT_EQ(*played.outcome, Bytes{1});
    EXPECT_EQ(played.answers, (std::vector<Bytes>{windowUpdate(0, 6)}));
}

TEST(Response, EndsAtTrailersThatGoOnInAnotherFrame) {
    EXPECT_EQ(messageOf(joined({headers(stream), data(stream, body({1})), frame(1, 0x01, stream, {0x00}),
                                frame(9, 0x04, stream, {0x01, 'a', 0x01, 'b'})})),
              Bytes{1});
}

TEST(Response, FailsWhenTheTrailersCloseItWithoutABody) {
    const Errors expected = transportErrors("stream closed without a response body (gRPC error)",
                                            "応答本体なしでストリームが閉じた (gRPC エラー)");
    EXPECT_EQ(failureOf(trailers(stream)), expected);
    EXPECT_EQ(failureOf(joined({headers(stream), trailers(stream)})), expected);
    EXPECT_EQ(failureOf(joined({headers(stream), data(stream, {}), trailers(stream)})), expected);
}

TEST(Response, FailsWhenItsStreamIsReset) {
    EXPECT_EQ(failureOf(joined({headers(stream), data(stream, body({1})), rstStream(stream)})),
              transportErrors("stream was reset", "ストリームがリセットされた"));
}

TEST(Response, FailsWhenTheServerSaysGoodbye) {
    const Errors expected = transportErrors("server sent GOAWAY", "サーバが GOAWAY を送った");
    EXPECT_EQ(failureOf(goaway()), expected);
    EXPECT_EQ(failureOf(frame(7, 0, 0, joined({number(0x7FFFFFFF), number(0)}))), expected);
    EXPECT_EQ(failureOf(frame(7, 0, 0)), expected);
}

TEST(Response, FailsWhenItsBodyIsNoMessage) {
    const auto malformed = [](const std::string& english, const std::string& japanese) {
        return Errors(PTSLError::malformedResponse(english), PTSLError::malformedResponse(japanese));
    };
    EXPECT_EQ(failureOf(joined({data(stream, {0, 0, 0, 0}), trailers(stream)})),
              malformed("gRPC frame too short", "gRPC 枠が短すぎる"));
    EXPECT_EQ(failureOf(data(stream, {}, 0x01)), malformed("gRPC frame too short", "gRPC 枠が短すぎる"));
    EXPECT_EQ(failureOf(data(stream, {1, 0, 0, 0, 1, 7}, 0x01)),
              malformed("compressed responses not supported", "圧縮された応答は未対応"));
    EXPECT_EQ(failureOf(data(stream, {0, 0, 0, 0, 10, 1, 2, 3, 4, 5, 6, 7, 8, 9}, 0x01)),
              malformed("gRPC body incomplete", "gRPC 本体が足りない"));
}

TEST(Response, IsReadWithThePaddingItCameWith) {
    const Bytes padded = joined({{3}, body({1}), {0, 0, 0}}); // the length of the padding, the body, the padding
    EXPECT_EQ(failureOf(joined({headers(stream), data(stream, padded, 0x08 | 0x01)})).first,
              PTSLError::malformedResponse("compressed responses not supported"));
}

// The length of the padding is read as the compression flag, and everything else is one byte late.
TEST(Response, IsReadFromTheByteBeforeItWhenItsPaddingHasNoLength) {
    const auto messageOfPadded = [](const Bytes& message) {
        return messageOf(joined({headers(stream), data(stream, joined({{0}, body(message)}), 0x08), trailers(stream)}));
    };
    EXPECT_EQ(messageOfPadded({}), Bytes{});
    EXPECT_EQ(messageOfPadded({1, 2, 3}), Bytes{});
    EXPECT_EQ(messageOfPadded(Bytes(0xFF, 7)), Bytes{});
    EXPECT_EQ(messageOfPadded(Bytes(0x0203, 7)), (Bytes{0x03, 7})); // a length of 00 00 00 02, and 03 after it
}

TEST(Response, IsAcknowledgedWithThePaddingItCameWith) {
    const Bytes padded = joined({{2}, body({1}), {0, 0}});
    const Played played = play(joined({headers(stream), data(stream, padded, 0x08)}));
    EXPECT_EQ(played.answers, (std::vector<Bytes>{windowUpdate(0, 9)}));
    EXPECT_FALSE(played.outcome);
}

TEST(Response, MayFillTheStreamsWindow) {
    Bytes message(http2::windowSize - 5, 0x20);
    const Bytes whole = body(message);
    ResponseReader reader(stream, Bilingual(false));
    std::optional<std::expected<Bytes, PTSLError>> outcome;
    for (std::size_t sent = 0; sent < whole.size(); sent += 16'384) {
        ASSERT_FALSE(outcome);
        const ByteView piece = ByteView(whole).subspan(sent, std::min<std::size_t>(16'384, whole.size() - sent));
        const bool last = sent + piece.size() == whole.size();
        outcome =
            reader.take({http2::FrameType::data, last ? http2::endStream : std::uint8_t{0}, stream, piece}).outcome;
    }
    ASSERT_TRUE(outcome);
    EXPECT_TRUE(*outcome == message);
}

TEST(Response, LeavesTheWindowsOfOtherStreamsToThem) {
    ResponseReader reader(stream, Bilingual(false));
    const Bytes piece(http2::windowSize);
    EXPECT_FALSE(reader.take({http2::FrameType::data, 0, stream, piece}).outcome);
    const auto step = reader.take({http2::FrameType::data, 0, stream + 2, ByteView(piece).first(1000)});
    EXPECT_FALSE(step.outcome);
    EXPECT_EQ(step.answer, windowUpdate(0, 1000));
}

TEST(Response, FailsWhenItOverrunsTheStreamsWindow) {
    for (const bool isJa : {false, true}) {
        ResponseReader reader(stream, Bilingual(isJa));
        const Bytes piece(http2::windowSize);
        EXPECT_FALSE(reader.take({http2::FrameType::data, 0, stream, piece}).outcome);
        const auto step = reader.take({http2::FrameType::data, 0, stream, ByteView(piece).first(1)});
        ASSERT_TRUE(step.outcome);
        ASSERT_FALSE(*step.outcome);
        EXPECT_EQ(step.outcome->error(),
                  PTSLError::transport(isJa ? "ストリームがリセットされた" : "stream was reset"));
    }
}

} // namespace
} // namespace lumbrine
