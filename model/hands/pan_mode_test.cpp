#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

class PanModeTest : public OwnedModelTest {};

TEST_F(PanModeTest, IsToldAndLoggedWhenItChanges) {
    PanMode& panMode = bench.parts().panMode;
    panMode.setPanMode(true);
    panMode.setPanMode(true);
    EXPECT_THAT(heard(0x15), ElementsAre("0ms 01 15 01"));
    EXPECT_TRUE(bench.model->published().panRight);
    panMode.setPanMode(false);
    EXPECT_THAT(heard(0x15), ElementsAre("0ms 01 15 00"));
    EXPECT_FALSE(bench.model->published().panRight);
    EXPECT_THAT(bench.takeLines(), ElementsAre("← Pan mode: Pan Right", "← Pan mode: Pan Left"));
}

TEST(PanModeInJapanese, IsLogged) {
    ModelWorld world;
    ModelBench bench(world, {.japanese = true});
    bench.parts().panMode.setPanMode(true);
    bench.parts().panMode.setPanMode(false);
    EXPECT_THAT(bench.takeLines(), ElementsAre("← パンモード: Pan Right(右)", "← パンモード: Pan Left(左)"));
}

} // namespace
} // namespace lumbrine
