#include "simulator/scripting_error.h"

#include "simulator/scripting_json.h"

namespace lumbrine {

namespace {

std::string_view nameOf(ScriptingError error) {
    switch (error) {
    case ScriptingError::unknownSession:
        return "UnknownSessionId";
    case ScriptingError::unknownTrack:
        return "UnknownTrackName";
    case ScriptingError::invalidBody:
        return "InvalidRequestBody";
    case ScriptingError::noOpenSession:
        return "NoOpenedSession";
    case ScriptingError::unsupportedCommand:
        return "UnsupportedCommand";
    case ScriptingError::hostNotReady:
        return "HostNotReady";
    case ScriptingError::commandTimedOut:
        return "CommandTimeOut";
    case ScriptingError::hostIsBusy:
        return "HostIsBusy";
    }
    return {};
}

ScriptingJSON typeOf(ScriptingError error, ErrorTypeSpelling spelling) {
    const int number = static_cast<int>(error);
    switch (spelling) {
    case ErrorTypeSpelling::number:
        return number;
    case ErrorTypeSpelling::digits:
        return std::to_string(number);
    case ErrorTypeSpelling::name:
        return nameOf(error);
    }
    return {};
}

} // namespace

std::string errorJSON(const ScriptingFailure& failure, ErrorTypeSpelling spelling) {
    ScriptingJSON error = ScriptingJSON::object();
    error["command_error_type"] = typeOf(failure.error, spelling);
    error["command_error_message"] = failure.message;
    error["is_warning"] = false;
    ScriptingJSON whole = ScriptingJSON::object();
    whole["errors"] = ScriptingJSON::array({error});
    return textOf(whole);
}

} // namespace lumbrine
