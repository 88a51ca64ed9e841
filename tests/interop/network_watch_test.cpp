// The system's own messages about addresses, in a network of the test's own.
#include "platform/posix/network_watch.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"
#include "tests/interop/child_process.h"
#include "tests/interop/own_world.h"

namespace lumbrine::interop {
namespace {

class NetworkWatchTest : public testing::Test {
protected:
    void SetUp() override {
        if (!inOwnWorld()) GTEST_SKIP() << "this system permits no network of the test's own";
    }

    // As a user's cable or Wi-Fi does, at the loopback interface.
    static void address(const std::string& command) {
        EXPECT_EQ(runCommand({"ip", "address", command, "10.9.8.7/32", "dev", "lo"}).status, 0);
    }

    // Returns when the watch has told, on the main thread; the test hangs when it does not.
    void expectToBeTold(const std::string& command) {
        bool onMain = false;
        const NetworkWatch watch(runtime, [&] {
            onMain = runtime.onMain();
            loop.stop();
        });
        address(command);
        loop.run();
        EXPECT_TRUE(onMain);
    }

    RunLoop loop;
    RealRuntime runtime{loop};
};

TEST_F(NetworkWatchTest, TellsOfAnAddressThatComes) {
    expectToBeTold("add");
    address("del");
}

TEST_F(NetworkWatchTest, TellsOfAnAddressThatGoes) {
    address("add");
    expectToBeTold("del");
}

TEST_F(NetworkWatchTest, EndsWithoutACallWhileAChangeSettles) {
    int told = 0;
    {
        const NetworkWatch watch(runtime, [&told] { ++told; });
        address("add");
    }
    runtime.postMain([this] { loop.stop(); });
    loop.run();
    EXPECT_EQ(told, 0);
    address("del");
}

} // namespace
} // namespace lumbrine::interop
