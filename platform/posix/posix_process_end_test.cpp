#include "platform/posix/posix_process_end.h"

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>

namespace lumbrine {
namespace {

using Clock = std::chrono::steady_clock;

// Runs `body` in a process of its own, which then stands still. The exit status, and how long the process lived.
template <typename Body>
std::pair<int, Duration> inItsOwnProcess(Body body) {
    const auto begun = Clock::now();
    const pid_t child = fork();
    if (child == 0) {
        body();
        for (;;)
            pause();
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Clock::now() - begun};
}

TEST(ProcessEnd, ComesAtItsTimeWhileTheProcessStandsStill) {
    const auto [status, lived] = inItsOwnProcess([] {
        static PosixProcessEnd end;
        end.within(seconds(0.1));
    });
    EXPECT_EQ(status, 0);
    EXPECT_GE(lived, seconds(0.1));
}

TEST(ProcessEnd, TellsThatTheProgramHadFailedBefore) {
    const auto [status, lived] = inItsOwnProcess([] {
        static PosixProcessEnd end;
        end.within(seconds(0.05));
        PosixProcessEnd::setStatus(1);
    });
    EXPECT_EQ(status, 1);
}

TEST(ProcessEnd, IsNotPutOffByALaterCall) {
    const auto [status, lived] = inItsOwnProcess([] {
        static PosixProcessEnd end;
        end.within(seconds(0.05));
        end.within(seconds(3600));
    });
    EXPECT_EQ(status, 0);
    EXPECT_LT(lived, seconds(60));
}

} // namespace
} // namespace lumbrine
