// ProcessEnd by the system's timer, which needs no thread. It takes over SIGALRM.
#pragma once

#include "platform/api/process_end.h"

#include <atomic>

namespace lumbrine {

class PosixProcessEnd final : public ProcessEnd {
public:
    void within(Duration limit) override;

    // The status with which the deadline ends the process; 0 until set. Any thread.
    static void setStatus(int status);

private:
    std::atomic<bool> isSet{false};
};

} // namespace lumbrine
