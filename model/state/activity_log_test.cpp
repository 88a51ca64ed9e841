// Lines that say the same again.
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

class ActivityLogTest : public ModelTest {
protected:
    void stand(const std::string& how) { bench.parts().log.sayOnceAMinute(how, "日本語"); }
    void drop(const std::string& what) { bench.parts().log.sayOnceARun(what, "日本語"); }
};

TEST_F(ActivityLogTest, SaysHowSomethingStandsOnceAMinute) {
    stand("Count mismatch");
    bench.run(59'999ms);
    stand("Count mismatch");
    EXPECT_THAT(bench.takeLines(), ElementsAre("Count mismatch"));
    bench.run(1ms);
    stand("Count mismatch");
    EXPECT_THAT(bench.takeLines(), ElementsAre("Count mismatch"));
}

TEST_F(ActivityLogTest, SaysOnceInTenSecondsThatSomethingWasDropped) {
    drop("Dropped a mute");
    bench.run(9'999ms);
    drop("Dropped a mute");
    EXPECT_THAT(bench.takeLines(), ElementsAre("Dropped a mute"));
    bench.run(1ms);
    drop("Dropped a mute");
    EXPECT_THAT(bench.takeLines(), ElementsAre("Dropped a mute"));
}

TEST_F(ActivityLogTest, SaysAnythingElseAtOnce) {
    stand("Count mismatch (1)");
    stand("Count mismatch (2)");
    drop("Dropped a mute");
    drop("Dropped a solo");
    EXPECT_EQ(bench.takeLines().size(), 4U);
}

TEST_F(ActivityLogTest, RemembersABoundedNumberOfLines) {
    for (int i = 0; i < 1000; ++i)
        drop("Dropped " + std::to_string(i));
    EXPECT_EQ(bench.takeLines().size(), 1000U);
    drop("Dropped 999");
    EXPECT_THAT(bench.takeLines(), IsEmpty());
}

} // namespace
} // namespace lumbrine
