// Reads the response to one unary gRPC call: frames in; answers to the peer and finally the outcome out. No I/O.
#pragma once

#include "base/bilingual.h"
#include "base/bytes.h"
#include "ptsl/http2_frames.h"
#include "ptsl/ptsl_error.h"

#include <cstdint>
#include <expected>
#include <optional>

namespace lumbrine {

// Header blocks are not decoded, so the gRPC status is unknown: the body alone is the response.
// - DATA, HEADERS and RST_STREAM of the call's stream, and GOAWAY, decide the outcome.
// - SETTINGS and PING are acknowledged. DATA on any stream is answered by a WINDOW_UPDATE of the connection.
// - All other frames are ignored.
// Padding of DATA is not supported: it counts as part of the body.
class ResponseReader {
public:
    ResponseReader(std::uint32_t streamID, Bilingual text) : streamID(streamID), text(text) {}

    struct Step {
        Bytes answer;                                           // a frame to send to the peer; may be empty
        std::optional<std::expected<Bytes, PTSLError>> outcome; // the message; pass no frame after it
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
