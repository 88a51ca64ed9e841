#include "base/testing/allocation_count.h"
#include "platform/api/runtime.h"
#include "platform/posix/run_loop.h"

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
        if (jobs == 10) before = allocationCount();
        if (jobs == 20) loop.stop();
    });
    loop.run();
    EXPECT_GT(before, 0);
    EXPECT_EQ(allocationCount(), before);
}

} // namespace
} // namespace lumbrine
