#include "ptsl/response_reader.h"

#include "ptsl/grpc_message.h"

#include <utility>

namespace lumbrine {

using http2::FrameType;

std::expected<Bytes, PTSLError> ResponseReader::transportError(std::string_view english,
                                                               std::string_view japanese) const {
    return std::unexpected(PTSLError::transport(text(english, japanese)));
}

ResponseReader::Step ResponseReader::takeData(const http2::Frame& frame) {
    const bool ours = frame.streamID == streamID;
    // The stream's window is never enlarged, so a peer that sends more violates flow control (RFC 9113, section 6.9).
    if (ours && frame.payload.size() > http2::windowSize - body.size())
        return {{}, transportError("stream was reset", "ストリームがリセットされた")};
    if (ours) body.insert(body.end(), frame.payload.begin(), frame.payload.end());
    Step step;
    // The connection's window is shared by all calls, so every byte is given back (RFC 9113, section 6.9).
    if (!frame.payload.empty())
        step.answer = writeFrame(FrameType::windowUpdate, 0, 0, be32(static_cast<std::uint32_t>(frame.payload.size())));
    if (ours && frame.has(http2::endStream)) step.outcome = unframe(std::move(body), text);
    return step;
}

ResponseReader::Step ResponseReader::take(const http2::Frame& frame) {
    const bool ours = frame.streamID == streamID;
    switch (frame.type) {
    case FrameType::data:
        return takeData(frame);
    case FrameType::headers:
        if (!ours || !frame.has(http2::endStream)) return {};
        // Trailers end the response. Without a body they are a gRPC error.
        if (!body.empty()) return {{}, unframe(std::move(body), text)};
        return {{},
                transportError("stream closed without a response body (gRPC error)",
                               "応答本体なしでストリームが閉じた (gRPC エラー)")};
    case FrameType::rstStream:
        if (!ours) return {};
        return {{}, transportError("stream was reset", "ストリームがリセットされた")};
    case FrameType::settings:
        if (frame.has(http2::ack)) return {};
        return {writeFrame(FrameType::settings, http2::ack, 0, {}), {}};
    case FrameType::ping:
        if (frame.has(http2::ack)) return {};
        return {writeFrame(FrameType::ping, http2::ack, 0, frame.payload), {}};
    case FrameType::goaway:
        return {{}, transportError("server sent GOAWAY", "サーバが GOAWAY を送った")};
    case FrameType::priority:
    case FrameType::pushPromise:
    case FrameType::windowUpdate:
    case FrameType::continuation:
        return {};
    }
    return {};
}

} // namespace lumbrine
