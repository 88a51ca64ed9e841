#include "platform/posix/line_input.h"

#include <unistd.h>

#include <condition_variable>
#include <mutex>

namespace lumbrine {
namespace {

class LineInputTest : public testing::Test {
protected:
    LineInputTest() { EXPECT_EQ(pipe(ends), 0); }
    ~LineInputTest() override {
        close(ends[0]);
        if (!closed) close(ends[1]);
    }

    void type(const std::string& text) {
        EXPECT_EQ(write(ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    void endInput() {
        close(ends[1]);
        closed = true;
    }

    std::function<void(std::string)> keep() {
        return [this](std::string line) {
            const std::lock_guard lock(mutex);
            lines.push_back(std::move(line));
            arrived.notify_all();
        };
    }

    std::vector<std::string> waitFor(std::size_t count) {
        std::unique_lock lock(mutex);
        arrived.wait_for(lock, std::chrono::seconds(10), [&] { return lines.size() >= count; });
        return lines;
    }

    int ends[2];
    bool closed = false;
    std::mutex mutex;
    std::condition_variable arrived;
    std::vector<std::string> lines;
};

TEST_F(LineInputTest, GivesLinesHoweverTheyAreCut) {
    const LineInput input(ends[0], keep());
    type("play\nren");
    EXPECT_THAT(waitFor(1), testing::ElementsAre("play"));
    type("ame 1 ボー");
    type("カル\n\nstop\n");
    EXPECT_THAT(waitFor(4), testing::ElementsAre("play", "rename 1 ボーカル", "", "stop"));
}

TEST_F(LineInputTest, TakesWhatFollowsTheLastNewlineForALine) {
    const LineInput input(ends[0], keep());
    type("play\nstop");
    endInput();
    EXPECT_THAT(waitFor(2), testing::ElementsAre("play", "stop"));
}

TEST_F(LineInputTest, EndsWhileItWaits) {
    {
        const LineInput input(ends[0], keep());
    }
    type("play\n");
    EXPECT_THAT(lines, testing::IsEmpty());
}

} // namespace
} // namespace lumbrine
