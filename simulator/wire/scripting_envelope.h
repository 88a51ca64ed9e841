// The messages around commands and their replies, as bytes: protocol buffers by the numbers of scripting.proto.
#pragma once

#include "base/bytes.h"
#include "simulator/scripting_message.h"

#include <optional>

namespace lumbrine::wire {

// Fields that nobody knows, or of another wire type, are passed over; of a field that comes twice the last one counts.
// Absent when the bytes are malformed or a text is no UTF-8.
std::optional<ScriptingRequest> decodeRequest(ByteView bytes);

// Fields that have no value are left out.
Bytes encodeReply(const ScriptingReply& reply);

} // namespace lumbrine::wire
