// When Pro Tools' windows are read.
#include "model/testing/model_test.h"
#include "model/tracks/screen_reading.h"

namespace lumbrine {
namespace {

using Kind = ScreenReading::Kind;

class ScreenReadingTest : public ::testing::Test {
protected:
    // A reading that takes so long and ends so, and whose beginning is noted.
    ScreenReading::Reading reading(std::string name, Duration duration, std::optional<NoReading> end = {}) {
        return [this, name = std::move(name), duration, end] {
            EXPECT_FALSE(world.runtime.onMain());
            const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(world.runtime.now() - start);
            begun.push_back(name + " " + std::to_string(time.count()));
            world.runtime.sleepFor(duration);
            return end;
        };
    }

    ModelWorld world;
    ModelBench bench{world};
    const TimePoint start = world.runtime.now();
    Lines begun;
    ScreenReading screen{bench.parts().jobs, bench.parts().log};
};

TEST_F(ScreenReadingTest, BeginsAtOnceAndLeavesTheScreenAloneForTwentyTimesAsLong) {
    screen.wish(Kind::names, reading("names", 100ms));
    bench.run(50ms);
    screen.wish(Kind::names, reading("names", 0ms));
    bench.run(10s);
    EXPECT_THAT(begun, ElementsAre("names 0", "names 2100"));
}

TEST_F(ScreenReadingTest, DoesNotRestBecauseTheComputerSlept) {
    screen.wish(Kind::names, reading("names", 11s));
    bench.run(1s);
    screen.wish(Kind::comments, reading("comments", 1h));
    screen.wish(Kind::names, reading("names", 0s));
    bench.run(2h);
    EXPECT_THAT(begun, ElementsAre("names 0", "comments 231000", "names 3831000"));
}

TEST_F(ScreenReadingTest, ReadsInTheOrderOfTheWishesAndEachKindOnce) {
    screen.wish(Kind::comments, reading("comments", 100ms));
    bench.run(50ms);
    screen.wish(Kind::names, reading("old names", 100ms));
    screen.wish(Kind::comments, reading("comments", 100ms));
    screen.wish(Kind::names, reading("names", 100ms));
    bench.run(10s);
    EXPECT_THAT(begun, ElementsAre("comments 0", "names 2100", "comments 4200"));
}

TEST_F(ScreenReadingTest, RestsAfterARefusalAndTellsItOnceUntilAReadingWorks) {
    screen.wish(Kind::names, reading("names", 0ms, NoReading::refused));
    screen.wish(Kind::comments, reading("comments", 0ms, NoReading::refused));
    bench.run(30s);
    EXPECT_THAT(begun, ElementsAre("names 0", "comments 30000"));
    EXPECT_EQ(bench.takeLines().size(), 1U);

    screen.wish(Kind::names, reading("names", 0ms));
    screen.wish(Kind::comments, reading("comments", 0ms, NoReading::refused));
    bench.run(30s);
    EXPECT_EQ(bench.takeLines().size(), 1U);
}

TEST_F(ScreenReadingTest, SaysNothingOfAProToolsThatIsBusyOrShowsNothing) {
    for (const NoReading end : {NoReading::nothingShown, NoReading::noAnswer, NoReading::tooLong})
        screen.wish(Kind::names, reading("names", 0ms, end));
    bench.run(1s);
    EXPECT_THAT(bench.takeLines(), IsEmpty());
}

} // namespace
} // namespace lumbrine
