// The response to one unary gRPC call: frames in, answers to the peer and at last the outcome out. No I/O.
#pragma once

#include "base/bilingual.h"
#include "base/bytes.h"
#include "ptsl/http2_frames.h"
#include "ptsl/ptsl_error.h"

#include <cstdint>
#include <expected>
#include <optional>

namespace lumbrine {

// Header blocks are never decoded, so the gRPC status is not read: a response is what its body says. Of the peer's
// frames only DATA, HEADERS and RST_STREAM of the call's own stream and GOAWAY decide anything; SETTINGS, PING and the
// size of DATA on any stream are answered; all else is ignored. DATA is taken as it comes, padding included.
class ResponseReader {
public:
    ResponseReader(std::uint32_t stream, Bilingual bilingual) : streamID(stream), text(bilingual) {}

    struct Step {
        Bytes answer;                                           // a frame to send before anything else; may be empty
        std::optional<std::expected<Bytes, PTSLError>> outcome; // the response's message; takes no frame after it
    };
    Step take(const http2::Frame& frame);

private:
    Step takeData(const http2::Frame& frame);
    std::expected<Bytes, PTSLError> transportError(std::string_view english, std::string_view japanese) const;

    const std::uint32_t streamID;
    const Bilingual text;
    Bytes body;
};

} // namespace lumbrine
