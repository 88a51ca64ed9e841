// The prefix of five bytes before each gRPC message: one byte 0 (not compressed) and the length, big-endian.
#pragma once

#include "base/bilingual.h"
#include "base/bytes.h"
#include "ptsl/ptsl_error.h"

#include <expected>

namespace lumbrine {

// Returns the message with its prefix. A message of 2^32 bytes or more ends the program.
Bytes grpcMessage(ByteView message);

// Returns the first message in the body of a response; bytes after it are ignored. Reuses the memory of `body`. Fails
// with malformedResponse when the message is compressed or incomplete.
std::expected<Bytes, PTSLError> unframe(Bytes body, const Bilingual& text);

} // namespace lumbrine
