#include "base/strip.h"

namespace lumbrine {
namespace {

TEST(Strip, LiesOnSurfaceAUpToSevenAndOnBFromEight) {
    EXPECT_EQ(Strip::of(7)->surface(), SurfaceID::A);
    EXPECT_EQ(Strip::of(7)->engineStrip(), 7);
    EXPECT_EQ(Strip::of(8)->surface(), SurfaceID::B);
    EXPECT_EQ(Strip::of(8)->engineStrip(), 0);
}

TEST(Strip, DoesNotExistOutsideZeroToFifteen) {
    EXPECT_FALSE(Strip::of(-1).has_value());
    EXPECT_TRUE(Strip::of(15).has_value());
    EXPECT_FALSE(Strip::of(16).has_value());
}

TEST(Strip, IsFoundFromASurfacesOwnNumber) {
    EXPECT_EQ(Strip::of(SurfaceID::A, 3)->index(), 3);
    EXPECT_EQ(Strip::of(SurfaceID::B, 3)->index(), 11);
    EXPECT_FALSE(Strip::of(SurfaceID::B, 8).has_value());
}

} // namespace
} // namespace lumbrine
