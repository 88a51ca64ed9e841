// A command to the scripting service and its reply, with the fields of their envelopes. Bodies are JSON text.
#pragma once

#include <cstdint>
#include <string>

namespace lumbrine {

struct ScriptingRequest {
    std::string taskID = {};
    std::int32_t command = 0;
    std::int32_t version = 0;
    std::string sessionID = {};
    std::int32_t versionMinor = 0;
    std::int32_t versionRevision = 0;
    std::string versionedHeaderJSON = {};
    std::string bodyJSON = {};

    bool operator==(const ScriptingRequest&) const = default;
};

enum class ScriptingStatus : std::int32_t {
    queued,
    pending,
    inProgress,
    completed,
    failed,
    waitingForUserInput,
    completedWithBadResponse,
    failedWithBadErrorResponse,
};

struct ScriptingReply {
    std::string taskID = {};
    std::int32_t command = 0;
    ScriptingStatus status = ScriptingStatus::completed;
    std::int32_t progress = 0; // percent
    std::int32_t version = 0;
    std::int32_t versionMinor = 0;
    std::int32_t versionRevision = 0;
    std::string versionedHeaderJSON = {};
    std::string bodyJSON = {};
    std::string errorJSON = {};

    bool operator==(const ScriptingReply&) const = default;
};

} // namespace lumbrine
