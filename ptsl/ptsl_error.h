// The errors of commands to Pro Tools' scripting service, and their texts for the user.
#pragma once

#include "base/bilingual.h"
#include "platform/api/json.h"

#include <string>
#include <string_view>
#include <variant>

namespace lumbrine {

struct PTSLError {
    enum class Case { transport, malformedResponse, commandFailed, notRunning, timedOut };

    // `detail` is in the user's language, or it is the service's own text.
    static PTSLError transport(std::string detail) { return {Case::transport, std::move(detail)}; }
    static PTSLError malformedResponse(std::string detail) { return {Case::malformedResponse, std::move(detail)}; }
    static PTSLError commandFailed(std::string detail) { return {Case::commandFailed, std::move(detail)}; }
    static PTSLError notRunning() { return {Case::notRunning, {}}; }
    static PTSLError timedOut() { return {Case::timedOut, {}}; }

    std::string description(const Bilingual& text) const;

    bool operator==(const PTSLError&) const = default;

    Case kind;
    std::string detail; // empty for notRunning and timedOut
};

// The reason why a command failed: an error of the link, or an error of the JSON parser or serialiser.
using PTSLFailure = std::variant<PTSLError, JSONError>;

std::string description(const PTSLFailure& failure, const Bilingual& text);

// True when the service answered and refused the command.
bool isCommandFailed(const PTSLFailure& failure);

} // namespace lumbrine
