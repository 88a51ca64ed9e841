// Waiting for the desktop's status area.
#pragma once

#include <functional>
#include <memory>

namespace lumbrine {

// What the toolkit finds when it first looks for a status area counts for the life of the program, and a program that
// starts with the desktop is often there before the panel. So whoever wants an icon asks here first. Main thread.
class StatusAreaWait {
public:
    static constexpr int longestMs = 15'000; // then the desktop has none, or one that may come at any time

    // Calls `over` once: now, where there is a status area or no message bus on which one could appear, else as soon as
    // it is there or the time is up.
    explicit StatusAreaWait(std::function<void()> over);
    ~StatusAreaWait();
    StatusAreaWait(const StatusAreaWait&) = delete;
    StatusAreaWait& operator=(const StatusAreaWait&) = delete;

    // Waits no longer; `over` has been called afterwards.
    void end();

private:
    class Looks;

    std::unique_ptr<Looks> looks; // while it waits
    std::function<void()> callback;
};

} // namespace lumbrine
