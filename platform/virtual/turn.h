// Flows of control that take turns: each has a stack of its own, and exactly one of them runs.
//
// On Linux they are contexts of one thread, since a turn then costs no system call that wakes a thread and virtual time
// is three times as fast. With sanitizers, which know threads and their stacks, and on macOS, they are real threads.
#pragma once

#include <functional>
#include <memory>

namespace lumbrine {

class Turn {
public:
    // The calling thread's own flow, which has the turn.
    Turn();

    // A new flow. It runs `body` from its first turn on.
    explicit Turn(std::function<void()> body);

    // The flow has ended, unless it is a thread's own.
    ~Turn();

    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    // The running flow gives its turn to `other`, and goes on when it gets it back. Everything that it did before is
    // visible to the other one.
    void passTo(Turn& other);

    // The running flow lets `other`, whose body now returns without another pass, come to its end.
    void letEnd(Turn& other);

    // Whether the calling thread is the one that this flow runs on.
    bool onItsThread() const;

private:
    struct Flow;
    std::unique_ptr<Flow> flow;
};

} // namespace lumbrine
