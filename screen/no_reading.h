// Why a reading of Pro Tools' windows brought nothing.
#pragma once

namespace lumbrine {

enum class NoReading {
    nothingShown, // what was looked for is not on the screen, or the user has not allowed to look
    noAnswer,     // Pro Tools is busy or hangs
    refused,      // the system says that reading is allowed, and refuses it
    tooLong,      // the reading reached its limit of time
};

} // namespace lumbrine
