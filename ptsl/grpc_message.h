// The five bytes that gRPC puts before a message: not compressed, and its length.
#pragma once

#include "base/bilingual.h"
#include "base/bytes.h"
#include "ptsl/ptsl_error.h"

#include <expected>

namespace lumbrine {

// A message of 2^32 bytes or more ends the program.
Bytes grpcMessage(ByteView message);

// The message in the body of a response, in the same memory; what follows it is ignored. Fails with malformedResponse.
std::expected<Bytes, PTSLError> unframe(Bytes body, const Bilingual& text);

} // namespace lumbrine
