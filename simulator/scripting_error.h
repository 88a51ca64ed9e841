// The errors of commands to the scripting service, and their JSON text.
#pragma once

#include "simulator/scripting_options.h"

#include <string>

namespace lumbrine {

enum class ScriptingError {
    unknownError = 100,
    noOpenSession = 106,
    noTrackFound = 107,
    invalidParameter = 126,
    forbidden = 127,
    forbiddenTrackType = 130,
    unsupportedCommand = 133,
    hostNotReady = 134,
    commandTimedOut = 137,
    hostIsBusy = 138,
    versionMismatch = 401,
    sessionID = 403,
};

struct ScriptingFailure {
    ScriptingError error;
    std::string message; // for people

    bool operator==(const ScriptingFailure&) const = default;
};

// {"errors":[{"command_error_type":138,"command_error_message":"...","is_warning":false}]}
std::string errorJSON(const ScriptingFailure& failure, ErrorTypeSpelling spelling);

} // namespace lumbrine
