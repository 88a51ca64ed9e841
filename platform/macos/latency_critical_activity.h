// Asks macOS to run this program without delays.
#pragma once

#include <memory>

namespace lumbrine {

// While this object lives, macOS neither puts the program into App Nap nor groups its timers. The computer may still go
// to sleep.
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
