// The small protocol-buffer messages in which commands and replies travel; their content is JSON text.
#pragma once

#include "base/bilingual.h"
#include "base/bytes.h"
#include "ptsl/ptsl_error.h"

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>

namespace lumbrine {

// The numbers by which the service knows its commands.
enum class PTSLCommand : std::uint16_t {
    trackList = 3,
    registerClient = 70,
    setMute = 85,
    setSolo = 86,
    setInputMonitor = 90
};

// header { 2: command, 3: version 5, 4: session, left out while empty }
// request { 1: header, 2: arguments, left out while empty }
Bytes requestEnvelope(PTSLCommand command, std::string_view sessionID, std::string_view argumentsJSON);

// header { 3: status }
// response { 1: header, 2: reply, 3: error }
// Anything else in them is skipped; of fields that come twice the last one counts.
struct ResponseEnvelope {
    static constexpr std::uint64_t failedStatus = 4;

    std::uint64_t status = 0;
    std::string replyJSON; // always UTF-8: what is not is repaired
    std::string errorJSON;

    bool operator==(const ResponseEnvelope&) const = default;
};

// Fails with malformedResponse.
std::expected<ResponseEnvelope, PTSLError> responseEnvelope(Bytes message, const Bilingual& text);

} // namespace lumbrine
