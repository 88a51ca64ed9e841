#include "platform/posix/run_loop.h"
#include "platform/posix/termination_signals.h"

#include <unistd.h>

#include <csignal>

namespace lumbrine {
namespace {

TEST(TerminationSignals, StopALoopInsteadOfKillingTheProgram) {
    for (const int signal : {SIGTERM, SIGINT}) {
        RunLoop loop;
        const TerminationSignals signals([&] { loop.stop(); });
        kill(getpid(), signal);
        loop.run();
    }
}

TEST(TerminationSignals, DoNotCallWhenNoneHasCome) {
    bool called = false;
    {
        const TerminationSignals signals([&] { called = true; });
    }
    EXPECT_FALSE(called);
}

} // namespace
} // namespace lumbrine
