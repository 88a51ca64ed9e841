// Between the messages that cross the wire, in the classes that protoc generates, and the service's own values.
#pragma once

#include "simulator/scripting_message.h"

namespace ptsl {
class Request;
class Response;
} // namespace ptsl

namespace lumbrine {

ScriptingRequest requestIn(const ::ptsl::Request& envelope);

// `envelope` is empty.
void putInto(::ptsl::Response& envelope, const ScriptingReply& reply);

} // namespace lumbrine
