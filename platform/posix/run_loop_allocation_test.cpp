#include "platform/api/runtime.h"
#include "platform/posix/run_loop.h"

#include <cstdlib>
#include <new>

namespace {

thread_local int allocations = 0; // by this thread, ever

} // namespace

void* operator new(std::size_t size) {
    ++allocations;
    if (void* const block = std::malloc(size == 0 ? 1 : size)) return block;
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
    std::free(block); // NOLINT(clang-analyzer-cplusplus.NewDelete): this is the delete
}

void operator delete(void* block, std::size_t) noexcept {
    std::free(block); // NOLINT(clang-analyzer-cplusplus.NewDelete): this is the delete
}

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

TEST(RunLoopAllocation, IsNoneForAJobOnceTheQueuesHaveHadTheirUsualLength) {
    RunLoop loop;
    int jobs = 0;
    int before = 0;
    const auto timer = loop.repeat(1ms, [&] {
        loop.post([&] { ++jobs; });
        loop.postAfter(100us, [&] { ++jobs; });
        if (jobs == 10) before = allocations;
        if (jobs == 20) loop.stop();
    });
    loop.run();
    EXPECT_GT(before, 0);
    EXPECT_EQ(allocations, before);
}

} // namespace
} // namespace lumbrine
