// What every system knows about its threads but each calls otherwise.
#pragma once

#include <memory>
#include <string_view>

namespace lumbrine {

// Names the calling thread for debuggers and process listings; cut to 15 characters.
void nameThisThread(std::string_view name);

// While it lives, the thread that made it, and the threads which that one starts, run on the one core it was made on.
// Threads that take strict turns hand over about ten times faster so. Does nothing where the system has no such thing.
// Destroyed on the thread that made it.
class StayOnThisCore {
public:
    StayOnThisCore();
    ~StayOnThisCore();
    StayOnThisCore(const StayOnThisCore&) = delete;
    StayOnThisCore& operator=(const StayOnThisCore&) = delete;

private:
    struct Before;
    std::unique_ptr<Before> before;
};

} // namespace lumbrine
