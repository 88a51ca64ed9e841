#include "app/receiver_ending.h"
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

class ReceiverEndingTest : public OwnedModelTest {
protected:
    struct Deadline final : ProcessEnd {
        void within(Duration limit) override { set.push_back(limit); }
        std::vector<Duration> set;
    };

    // Ends the program; when its runtime is shut down, what Pro Tools has been sent until then is noted.
    void end() {
        endReceiver({world.runtime, process, bench.streams,
                     [this] {
                         bench.run(0s);
                         sentBefore = bench.heardOn(bench.surfaceA);
                         deadlinesBefore = process.set;
                     },
                     [this] { ended = true; }},
                    bench.model);
    }

    Deadline process;
    Lines sentBefore;
    std::vector<Duration> deadlinesBefore;
    bool ended = false;
};

TEST_F(ReceiverEndingTest, LetsGoOfWhatIsDownBeforeAnythingIsShutDown) {
    phone->send({0x01, 0x02, 0x03}); // touch strip 3
    phone->send({0x01, 0x04, 0x02}); // mute strip 2
    bench.run(10ms);
    bench.mark();
    end();
    EXPECT_THAT(sentBefore, ElementsAre("0ms B0 0F 02", "0ms B0 2F 02", "0ms B0 0F 03", "0ms B0 2F 00"));
}

TEST_F(ReceiverEndingTest, HasItsDeadlineFirst) {
    end();
    EXPECT_THAT(deadlinesBefore, ElementsAre(endingTime));
    EXPECT_LT(endingTime, 1s);
}

TEST_F(ReceiverEndingTest, IsCompleteWhenTheLastJobIsDoneWithTheModel) {
    bench.parts().jobs.inBackground(Priority::normal, [this] { world.runtime.sleepFor(500ms); });
    bench.run(1ms);
    end();
    EXPECT_EQ(bench.model, nullptr);
    bench.run(498ms);
    EXPECT_FALSE(ended);
    bench.run(3ms);
    EXPECT_TRUE(ended);
}

TEST_F(ReceiverEndingTest, ComesOnce) {
    end();
    bench.run(1s);
    ended = false;
    end();
    bench.run(1s);
    EXPECT_FALSE(ended);
    EXPECT_THAT(process.set, testing::SizeIs(1));
}

} // namespace
} // namespace lumbrine
