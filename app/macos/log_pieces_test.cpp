#include "app/macos/log_pieces.h"

namespace lumbrine {
namespace {

TEST(LogPieces, ARowIsItsTimeItsSignAndItsLine) {
    EXPECT_EQ(pieceOf({1, "14:03:59", "✓ UDP listening"}),
              (LogPiece{"14:03:59  ✓ UDP listening\n", 10, 10, 1, LogMarker::success}));
    EXPECT_EQ(pieceOf({1, "", "plain"}), (LogPiece{"plain\n", 0, 0, 0, LogMarker::none}));
}

TEST(LogPieces, LengthsCountUTF16Units) {
    const LogPiece piece = pieceOf({1, "", "[9-16] ✗ 失敗 🎚"});
    EXPECT_EQ(piece.signBegin, 7U);
    EXPECT_EQ(piece.signLength, 1U);
    EXPECT_EQ(editBetween({{1, "", "[9-16] ✗ 失敗 🎚"}}, {}).gone, 15U) << "the slider takes two, and so does a pair";
}

TEST(LogPieces, ALineThatIsNotUTF8IsEmpty) {
    EXPECT_EQ(pieceOf({1, "14:03:59", "✓ \xFF"}), (LogPiece{"14:03:59  \n", 10, 10, 0, LogMarker::none}));
}

TEST(LogPieces, NewRowsAreAppended) {
    const LogRow first{1, "", "one"};
    const LogRow second{2, "", "two"};
    EXPECT_EQ(editBetween({first}, {first, second}), (LogEdit{0, 4, {pieceOf(second)}}));
}

TEST(LogPieces, OldRowsGoFromTheBeginning) {
    const LogRow first{1, "", "one"};
    const LogRow second{2, "", "three"};
    EXPECT_EQ(editBetween({first, second}, {second}), (LogEdit{4, 6, {}}));
}

TEST(LogPieces, ARowWhoseTextChangesIsWrittenAnew) {
    const LogRow first{1, "", "one"};
    const LogRow before{2, "", "♥ ping #10"};
    const LogRow after{2, "", "♥ ping #10 … #20"};
    EXPECT_EQ(editBetween({first, before}, {first, after}), (LogEdit{0, 4, {pieceOf(after)}}));
}

} // namespace
} // namespace lumbrine
