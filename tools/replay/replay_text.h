// What `lumbrine-blackbox replay` prints.
#pragma once

#include "tools/replay/replay.h"

#include <string>

namespace lumbrine::blackbox {

// Lines: that both are the same; or their first difference with what came before and after, and how far they agree.
std::string textOf(const Replay& replay);

} // namespace lumbrine::blackbox
