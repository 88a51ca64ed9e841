// Waits for the desktop's status area.
#pragma once

#include <functional>
#include <memory>

namespace lumbrine {

// Qt looks for a status area once and keeps the answer for the life of the program, and a program that starts with the
// desktop often runs before the panel does. So wait here before creating the first icon. Main thread.
class StatusAreaWait {
public:
    static constexpr int longestMs = 15'000; // after that, the desktop counts as having none for now

    // Calls `callback` once. Calls it at once when there is a status area, and when there is no message bus on which
    // one could appear; otherwise as soon as one appears or the time is up.
    explicit StatusAreaWait(std::function<void()> callback);
    ~StatusAreaWait();
    StatusAreaWait(const StatusAreaWait&) = delete;
    StatusAreaWait& operator=(const StatusAreaWait&) = delete;

    // Stops waiting. Calls `callback` if that has not happened yet.
    void end();

private:
    class Looks;

    std::unique_ptr<Looks> looks; // null when the wait is over
    std::function<void()> callback;
};

} // namespace lumbrine
