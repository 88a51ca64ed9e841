#include "base/fader_value.h"

namespace lumbrine {
namespace {

TEST(FaderValue, TruncatesToFourteenBits) {
    EXPECT_EQ(FaderValue::ofUnit(0.5).raw(), 8191);
    EXPECT_EQ(FaderValue::ofUnit(0.99999).raw(), 16382);
    EXPECT_EQ(FaderValue::ofUnit(1.0).raw(), 16383);
}

TEST(FaderValue, ClampsBeforeItScales) {
    EXPECT_EQ(FaderValue::ofUnit(1.2).raw(), 16383);
    EXPECT_EQ(FaderValue::ofUnit(-0.1).raw(), 0);
}

TEST(FaderValue, SplitsIntoTheHalvesOfAHUIMessageAndBack) {
    const FaderValue half = FaderValue::ofUnit(0.5);
    EXPECT_EQ(half.high(), 0x3F);
    EXPECT_EQ(half.low(), 0x7F);
    EXPECT_EQ(FaderValue::ofHalves(0x3F, 0x7F), half);
    EXPECT_EQ(FaderValue::ofHalves(0x7F, 0x7F).unit(), 1.0);
}

} // namespace
} // namespace lumbrine
