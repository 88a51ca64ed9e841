#include "simulator/envelope/scripting_envelope.h"

#include <scripting.pb.h>

#include <cstdint>

namespace lumbrine {

ScriptingRequest requestIn(const ::ptsl::Request& envelope) {
    const ::ptsl::RequestHeader& header = envelope.header();
    return {
        .taskID = header.task_id(),
        .command = header.command(),
        .version = header.version(),
        .sessionID = header.session_id(),
        .versionMinor = header.version_minor(),
        .versionRevision = header.version_revision(),
        .versionedHeaderJSON = header.versioned_request_header_json(),
        .bodyJSON = envelope.request_body_json(),
    };
}

void putInto(::ptsl::Response& envelope, const ScriptingReply& reply) {
    ::ptsl::ResponseHeader& header = *envelope.mutable_header();
    header.set_task_id(reply.taskID);
    header.set_command(reply.command);
    header.set_status(static_cast<std::int32_t>(reply.status));
    header.set_progress(reply.progress);
    header.set_version(reply.version);
    header.set_version_minor(reply.versionMinor);
    header.set_version_revision(reply.versionRevision);
    header.set_versioned_response_header_json(reply.versionedHeaderJSON);
    envelope.set_response_body_json(reply.bodyJSON);
    envelope.set_response_error_json(reply.errorJSON);
}

} // namespace lumbrine
