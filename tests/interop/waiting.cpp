#include "tests/interop/waiting.h"

#include <thread>

namespace lumbrine::interop {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds betweenLooks{3};

} // namespace

bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    while (!condition()) {
        if (Clock::now() >= deadline) return false;
        std::this_thread::sleep_for(betweenLooks);
    }
    return true;
}

bool holdsFor(std::chrono::milliseconds duration, const std::function<bool()>& condition) {
    return !waitUntil([&] { return !condition(); }, duration);
}

} // namespace lumbrine::interop
