// Asking the system to let this program work without delay.
#pragma once

#include <memory>

namespace lumbrine {

// While it lives the system neither naps this program nor gathers its timers. The computer may still go to sleep.
class LatencyCriticalActivity {
public:
    LatencyCriticalActivity();
    ~LatencyCriticalActivity();
    LatencyCriticalActivity(const LatencyCriticalActivity&) = delete;
    LatencyCriticalActivity& operator=(const LatencyCriticalActivity&) = delete;

private:
    struct Token;
    const std::unique_ptr<Token> token;
};

} // namespace lumbrine
