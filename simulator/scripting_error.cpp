#include "simulator/scripting_error.h"

#include "simulator/scripting_json.h"

namespace lumbrine {

namespace {

std::string_view nameOf(ScriptingError error) {
    switch (error) {
    case ScriptingError::unknownError:
        return "PT_UnknownError";
    case ScriptingError::noOpenSession:
        return "PT_NoOpenedSession";
    case ScriptingError::noTrackFound:
        return "PT_NoTrackFound";
    case ScriptingError::invalidParameter:
        return "PT_InvalidParameter";
    case ScriptingError::forbidden:
        return "PT_Forbidden";
    case ScriptingError::forbiddenTrackType:
        return "PT_ForbiddenTrackType";
    case ScriptingError::unsupportedCommand:
        return "PT_UnsupportedCommand";
    case ScriptingError::hostNotReady:
        return "PT_HostNotReady";
    case ScriptingError::commandTimedOut:
        return "PT_CommandTimeout";
    case ScriptingError::hostIsBusy:
        return "PT_HostIsBusy";
    case ScriptingError::versionMismatch:
        return "SDK_VersionMismatch";
    case ScriptingError::sessionID:
        return "SDK_SessionID"; // an assumption: the real name is not known
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
    case ErrorTypeSpelling::prefixedName:
        return "CEType_" + std::string(nameOf(error));
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
