#include "base/testing/allocation_count.h"
#include "platform/api/runtime.h"
#include "platform/posix/run_loop.h"

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

TEST(RunLoopAllocation, IsNoneForAJobOnceTheQueuesHaveHadTheirUsualLength) {
    RunLoop loop;
    int rounds = 0;
    int jobs = 0;
    int before = 0;
    const auto timer = loop.repeat(1ms, [&] {
        if (jobs < 2 * rounds) return; // a busy computer is late with the last round's
        ++rounds;
        loop.post([&] { ++jobs; });
        loop.postAfter(100us, [&] { ++jobs; });
        if (rounds == 10) before = allocationCount();
        if (rounds == 20) loop.stop();
    });
    loop.run();
    EXPECT_GT(before, 0);
    EXPECT_EQ(allocationCount(), before);
}

} // namespace
} // namespace lumbrine
