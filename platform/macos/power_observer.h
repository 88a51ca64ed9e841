// Reports when the computer goes to sleep and wakes up.
#pragma once

#include <functional>
#include <memory>

namespace lumbrine {

// Main thread; its event loop delivers the system's notifications.
class PowerObserver {
public:
    PowerObserver(std::function<void()> willSleep, std::function<void()> didWake);

    // No call follows.
    ~PowerObserver();

    PowerObserver(const PowerObserver&) = delete;
    PowerObserver& operator=(const PowerObserver&) = delete;

private:
    struct Tokens;
    const std::unique_ptr<Tokens> tokens;
};

} // namespace lumbrine
