// Thread naming and pinning, which every OS has under a different call.
#pragma once

#include <memory>
#include <string_view>

namespace lumbrine {

// Names the calling thread for debuggers and process listings. Linux has room for 15 bytes; longer names are cut.
void nameThisThread(std::string_view name);

// While this object lives, the thread that created it, and every thread which that thread starts, run on the current
// core. Threads of which only one runs at a time switch about ten times faster on one core. Does nothing on macOS,
// which has no such call. Destroy it on the thread that created it.
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
