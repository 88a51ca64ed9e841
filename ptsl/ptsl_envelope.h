// The protocol-buffer messages that carry commands and replies. The arguments and the replies inside are JSON text.
#pragma once

#include "base/bilingual.h"
#include "base/bytes.h"
#include "ptsl/ptsl_error.h"

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>

namespace lumbrine {

// The service's numbers for its commands.
enum class PTSLCommand : std::uint16_t {
    trackList = 3,
    registerClient = 70,
    setMute = 85,
    setSolo = 86,
    setInputMonitor = 90
};

// The protocol's version of Pro Tools 2024.10. Later ones take it too, older ones refuse it.
inline constexpr std::uint64_t newestVersion = 5;

// Fields, by number:
// header { 2: command, 3: version, 4: session, left out when empty }
// request { 1: header, 2: arguments, left out when empty }
Bytes requestEnvelope(PTSLCommand command, std::string_view sessionID, std::string_view argumentsJSON,
                      std::uint64_t version = newestVersion);

// Fields, by number:
// header { 3: status }
// response { 1: header, 2: reply, 3: error }
// Other fields are skipped. When a field occurs more than once, the last one counts.
struct ResponseEnvelope {
    std::uint64_t status = 0;
    std::string replyJSON; // always UTF-8: invalid bytes are replaced by U+FFFD
    std::string errorJSON;

    bool hasFailed() const;

    // No result yet, and none in this response: the command is queued, pending, in progress, or waits for the user.
    bool isUnfinished() const;

    bool operator==(const ResponseEnvelope&) const = default;
};

// Decodes a response. Fails with malformedResponse.
std::expected<ResponseEnvelope, PTSLError> responseEnvelope(Bytes message, const Bilingual& text);

} // namespace lumbrine
