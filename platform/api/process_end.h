// The end of this process at a set time, whatever its threads are doing.
#pragma once

#include "platform/api/time.h"

namespace lumbrine {

class ProcessEnd {
public:
    virtual ~ProcessEnd() = default;

    // Ends the process when `limit` has passed, even if every thread stands still: without destructors, and what has
    // not been written yet is lost. Nothing happens when the process has ended by itself before. Only the first call
    // counts. Any thread.
    virtual void within(Duration limit) = 0;
};

} // namespace lumbrine
