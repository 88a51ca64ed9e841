#include "ptsl/grpc_message.h"

#include "ptsl/http2_frames.h"

#include <cstdlib>
#include <limits>

namespace lumbrine {

namespace {

constexpr std::size_t prefixSize = 5;

} // namespace

Bytes grpcMessage(ByteView message) {
    if (message.size() > std::numeric_limits<std::uint32_t>::max()) std::abort();
    Bytes body;
    body.reserve(prefixSize + message.size());
    body.push_back(0);
    const auto length = be32(static_cast<std::uint32_t>(message.size()));
    body.insert(body.end(), length.begin(), length.end());
    body.insert(body.end(), message.begin(), message.end());
    return body;
}

std::expected<Bytes, PTSLError> unframe(Bytes body, const Bilingual& text) {
    const auto malformed = [&](std::string_view english, std::string_view japanese) {
        return std::unexpected(PTSLError::malformedResponse(text(english, japanese)));
    };
    if (body.size() < prefixSize) return malformed("gRPC frame too short", "gRPC 枠が短すぎる");
    if (body[0] != 0) return malformed("compressed responses not supported", "圧縮された応答は未対応");
    const std::size_t length = be32(ByteView(body).subspan<1, 4>());
    if (body.size() - prefixSize < length) return malformed("gRPC body incomplete", "gRPC 本体が足りない");
    body.erase(body.begin(), body.begin() + prefixSize);
    body.resize(length);
    return body;
}

} // namespace lumbrine
