#include "remote/canvas.h"

namespace lumbrine::remote {
namespace {

TEST(Canvas, HoldsTextWhereItWasPut) {
    Canvas canvas(2, 10);
    canvas.put(1, 3, "abc");
    EXPECT_EQ(canvas.line(0), "");
    EXPECT_EQ(canvas.line(1), "   abc");
}

TEST(Canvas, LeavesOutWhatDoesNotFit) {
    Canvas canvas(1, 4);
    canvas.put(0, 2, "abc");
    canvas.put(0, -1, "xy");
    canvas.put(1, 0, "z");
    canvas.put(-1, 0, "z");
    EXPECT_EQ(canvas.line(0), "y ab");
}

TEST(Canvas, GivesAWideGlyphTwoCellsOrNone) {
    Canvas canvas(1, 5);
    canvas.put(0, 0, "あいう");
    EXPECT_EQ(canvas.line(0), "あい");
    EXPECT_EQ(canvas.at(0, 0).text, "あ");
    EXPECT_EQ(canvas.at(0, 1).text, "");
    EXPECT_EQ(canvas.at(0, 4).text, " ");
}

TEST(Canvas, KeepsTheStyleOfEachCell) {
    Canvas canvas(1, 3);
    canvas.putFitted(0, 0, "a", 2, {.ink = Ink::red, .bold = true});
    EXPECT_EQ(canvas.at(0, 1), (Cell{" ", {.ink = Ink::red, .bold = true}}));
    EXPECT_EQ(canvas.at(0, 2), Cell{});
}

TEST(Canvas, DiffersWhenAStyleDiffers) {
    Canvas one(1, 1);
    Canvas other(1, 1);
    EXPECT_EQ(one, other);
    other.put(0, 0, " ", {.reverse = true});
    EXPECT_FALSE(one == other);
}

TEST(Canvas, OfNoSizeHoldsNothing) {
    Canvas canvas(0, -1);
    canvas.put(0, 0, "a");
    EXPECT_EQ(canvas.rows(), 0);
    EXPECT_EQ(canvas.columns(), 0);
}

} // namespace
} // namespace lumbrine::remote
