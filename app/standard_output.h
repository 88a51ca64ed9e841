// Standard output, as the place where a program's log goes.
#pragma once

#include "base/bilingual.h"
#include "platform/posix/line_output.h"

namespace lumbrine {

// For the lines of a ReceiverModel.
LineOutput standardOutput(Bilingual text);

} // namespace lumbrine
