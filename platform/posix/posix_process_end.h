// ProcessEnd by the system's timer, which needs no thread. It takes over SIGALRM.
#pragma once

#include "platform/api/process_end.h"

#include <atomic>

namespace lumbrine {

class PosixProcessEnd final : public ProcessEnd {
public:
    void within(Duration limit) override;

private:
    std::atomic<bool> isSet{false};
};

} // namespace lumbrine
