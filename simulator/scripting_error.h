// Why a command fails, and the text that tells it.
#pragma once

#include "simulator/scripting_options.h"

#include <string>

namespace lumbrine {

enum class ScriptingError {
    // Nobody knows the numbers of these three; they are the simulator's own.
    unknownSession = 101,
    unknownTrack = 102,
    invalidBody = 103,

    noOpenSession = 106,
    unsupportedCommand = 133,
    hostNotReady = 134,
    commandTimedOut = 137,
    hostIsBusy = 138,
};

struct ScriptingFailure {
    ScriptingError error;
    std::string message; // for a person

    bool operator==(const ScriptingFailure&) const = default;
};

// {"errors":[{"command_error_type":138,"command_error_message":"...","is_warning":false}]}
std::string errorJSON(const ScriptingFailure& failure, ErrorTypeSpelling spelling);

} // namespace lumbrine
