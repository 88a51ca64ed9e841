// A file for those who help: a recording without names, with what the receiver says of itself at its end.
#pragma once

#include "base/bytes.h"

#include <string>

namespace lumbrine::blackbox {

// The recording with each line of `diagnosis` as a line of its log, redacted. `ring` is a whole recording, whose oldest
// records make room where it is full.
Bytes reportOf(ByteView ring, const std::string& diagnosis);

} // namespace lumbrine::blackbox
