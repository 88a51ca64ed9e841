// The errors of commands to Pro Tools' scripting service, and their texts for the user.
#pragma once

#include "base/bilingual.h"
#include "platform/api/json.h"

#include <string>
#include <string_view>
#include <variant>

namespace lumbrine {

// The service's numbers for its errors, as far as they make a difference.
enum class PTSLRefusal {
    none = 0,   // there is none that can be read
    other = -1, // any other
    unknownError = 100,
    noOpenSession = 106,
    invalidParameter = 126,
    forbidden = 127,
    hostNotReady = 134,
    commandTimedOut = 137,
    hostIsBusy = 138,
    versionMismatch = 401,
    sessionID = 403,
};

struct PTSLError {
    enum class Case { transport, malformedResponse, commandFailed, unfinished, notRunning, timedOut };

    // `detail` is in the user's language, or it is the service's own text.
    static PTSLError transport(std::string detail) { return {Case::transport, std::move(detail)}; }
    static PTSLError malformedResponse(std::string detail) { return {Case::malformedResponse, std::move(detail)}; }
    static PTSLError commandFailed(std::string detail, PTSLRefusal refusal = PTSLRefusal::none) {
        return {Case::commandFailed, std::move(detail), refusal};
    }
    static PTSLError unfinished() { return {Case::unfinished, {}}; }
    static PTSLError notRunning() { return {Case::notRunning, {}}; }
    static PTSLError timedOut() { return {Case::timedOut, {}}; }

    std::string description(const Bilingual& text) const;

    bool operator==(const PTSLError&) const = default;

    Case kind;
    std::string detail; // empty for unfinished, notRunning and timedOut
    PTSLRefusal refusal = PTSLRefusal::none;
};

// The reason why a command failed: an error of the link, or an error of the JSON parser or serialiser.
using PTSLFailure = std::variant<PTSLError, JSONError>;

std::string description(const PTSLFailure& failure, const Bilingual& text);

// Nothing listens where the service should be.
bool isNotRunning(const PTSLFailure& failure);

// What is known of a command that failed.
enum class Verdict {
    refused, // the service will not carry it out, however often it is asked
    notYet,  // it was not carried out, but may be the next time: the service is busy or not there
    unknown, // it may have been carried out, or may still be
};
Verdict verdictOn(const PTSLFailure& failure);

// Reads the number of the first error in the service's error text, in any of its spellings: 138, "138",
// "PT_HostIsBusy", "CEType_PT_HostIsBusy".
PTSLRefusal refusalIn(const JSONValue& error);

} // namespace lumbrine
