// The test sweep on the wire: which bytes, when, and not twice at once.
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

class FaderSweepTest : public ModelTest {
protected:
    FaderSweepTest() { bench.start(); }

    Lines onTheWire() { return bench.heardOn(bench.surfaceA); }
};

// Each position of the way up as the wire has it: 819 of 16383 a step, the fraction cut off.
const std::vector<std::pair<int, int>> halvesUp{
    {0x00, 0x00}, {0x06, 0x33}, {0x0C, 0x66}, {0x13, 0x19}, {0x19, 0x4C}, {0x1F, 0x7F}, {0x26, 0x32},
    {0x2C, 0x66}, {0x33, 0x19}, {0x39, 0x4C}, {0x3F, 0x7F}, {0x46, 0x32}, {0x4C, 0x65}, {0x53, 0x18},
    {0x59, 0x4C}, {0x5F, 0x7F}, {0x66, 0x32}, {0x6C, 0x65}, {0x73, 0x18}, {0x79, 0x4B}, {0x7F, 0x7F}};

Lines expectedSweep() {
    Lines lines{"0ms B0 0F 00", "0ms B0 2F 40"}; // touched
    int time = 0;
    const auto position = [&](const std::pair<int, int>& halves) {
        std::array<char, 64> line{};
        std::snprintf(line.data(), line.size(), "%dms B0 00 %02X", time, static_cast<unsigned>(halves.first));
        lines.emplace_back(line.data());
        std::snprintf(line.data(), line.size(), "%dms B0 20 %02X", time, static_cast<unsigned>(halves.second));
        lines.emplace_back(line.data());
        time += 35;
    };
    for (const auto& halves : halvesUp)
        position(halves);
    for (auto halves = halvesUp.rbegin(); halves != halvesUp.rend(); ++halves)
        position(*halves);
    lines.insert(lines.end(), {"1470ms B0 0F 00", "1470ms B0 2F 00"}); // let go
    return lines;
}

TEST_F(FaderSweepTest, GoesUpAndDownAndLetsGo) {
    bench.model->runDemo();
    bench.run(3s);
    EXPECT_EQ(onTheWire(), expectedSweep());
    EXPECT_THAT(bench.heardOn(bench.surfaceB), IsEmpty());
}

TEST_F(FaderSweepTest, SaysSoAndNothingMore) {
    bench.model->runDemo();
    EXPECT_THAT(bench.takeLines(), ElementsAre("▶ Test: sending track 1 sweep"));
    bench.run(3s);
    EXPECT_THAT(bench.takeLines(), IsEmpty());
}

TEST(FaderSweepInJapanese, SaysSo) {
    ModelWorld world;
    ModelBench bench(world, {.japanese = true});
    bench.start();
    bench.model->runDemo();
    EXPECT_THAT(bench.takeLines(), ElementsAre("▶ テスト: トラック1 スイープ送信"));
}

TEST_F(FaderSweepTest, DoesNotHoldUpWhoeverAskedForIt) {
    const TimePoint before = world.runtime.now();
    bench.model->runDemo();
    EXPECT_EQ(world.runtime.now(), before);
}

TEST_F(FaderSweepTest, RunsOnceAtATime) {
    bench.model->runDemo();
    bench.run(1469ms);
    bench.model->runDemo();
    bench.run(2s);
    EXPECT_EQ(onTheWire(), expectedSweep());
    EXPECT_THAT(bench.takeLines(), testing::SizeIs(1));
}

TEST_F(FaderSweepTest, CanBeRunAgainAfterwards) {
    bench.model->runDemo();
    bench.run(1471ms);
    bench.mark();
    bench.model->runDemo();
    bench.run(2s);
    EXPECT_EQ(onTheWire(), expectedSweep());
    EXPECT_THAT(bench.takeLines(), testing::SizeIs(2));
}

} // namespace
} // namespace lumbrine
