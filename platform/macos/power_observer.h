// Hearing of the computer's sleep.
#pragma once

#include <functional>
#include <memory>

namespace lumbrine {

// Main thread, whose event loop carries the system's notes.
class PowerObserver {
public:
    PowerObserver(std::function<void()> willSleep, std::function<void()> didWake);

    // No call comes afterwards.
    ~PowerObserver();

    PowerObserver(const PowerObserver&) = delete;
    PowerObserver& operator=(const PowerObserver&) = delete;

private:
    struct Tokens;
    const std::unique_ptr<Tokens> tokens;
};

} // namespace lumbrine
