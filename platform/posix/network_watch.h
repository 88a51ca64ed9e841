// Notices when this computer gets or loses an address: another Wi-Fi, a cable, a new lease.
#pragma once

#include "platform/api/runtime.h"

#include <array>
#include <functional>
#include <memory>

namespace lumbrine {

// Main thread. Sleeps until the system tells of a change.
class NetworkWatch {
public:
    // Changes that follow each other within this time are reported once.
    static constexpr Duration settling = seconds(0.3);

    // `changed` is called on the main thread. Never, when the system does not tell.
    NetworkWatch(Runtime& runtime, std::function<void()> changed);

    // No call follows.
    ~NetworkWatch();

    NetworkWatch(const NetworkWatch&) = delete;
    NetworkWatch& operator=(const NetworkWatch&) = delete;

private:
    void watch();
    bool waitForMessage(bool forEver) const;
    bool readMessage() const;

    Runtime& runtime;
    const std::shared_ptr<const std::function<void()>> changed; // posted calls hold it weakly
    int events = -1;
    std::array<int, 2> ending{-1, -1}; // a pipe: closing its end for writing wakes the thread
    std::unique_ptr<Thread> thread;
};

} // namespace lumbrine
