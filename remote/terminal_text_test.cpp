#include "remote/terminal_text.h"

namespace lumbrine::remote {
namespace {

TEST(Printable, LeavesOrdinaryTextAlone) {
    EXPECT_EQ(printable("Lead Vocal é あ 🎚"), "Lead Vocal é あ 🎚");
    EXPECT_EQ(printable(""), "");
}

TEST(Printable, LetsNothingThroughThatSteersATerminal) {
    EXPECT_EQ(printable("a\x1B[2Jb\n\t\x7F"), "a?[2Jb???");
    EXPECT_EQ(printable("\u0085\u009B"), "??");            // control characters of the second block
    EXPECT_EQ(printable("\u202Eab\u2066\u200B"), "?ab??"); // turned direction, invisible blank
}

TEST(Printable, ReplacesBytesThatAreNoText) {
    EXPECT_EQ(printable("a\xFF"
                        "b"),
              "a\uFFFDb");
    EXPECT_EQ(printable("\xE3\x81"), "\uFFFD");       // cut in the middle of a character
    EXPECT_EQ(printable("\xC0\xAF"), "\uFFFD\uFFFD"); // a longer form than needed
    EXPECT_EQ(printable("\xE0\x80\xAF"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(printable("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");           // half of a pair
    EXPECT_EQ(printable("\xF4\x90\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD"); // beyond the last character
}

TEST(ColumnsOf, CountsWideCharactersTwiceAndMarksNotAtAll) {
    EXPECT_EQ(columnsOf("Kick"), 4);
    EXPECT_EQ(columnsOf("あい"), 4);
    EXPECT_EQ(columnsOf("e\u0301"), 1);
    EXPECT_EQ(columnsOf("か\u3099"), 2);     // a syllable with its sound mark apart
    EXPECT_EQ(columnsOf("\u0915\u0941"), 1); // Devanagari
    EXPECT_EQ(columnsOf("\u0E01\u0E34"), 1); // Thai
    EXPECT_EQ(columnsOf("\u05D0\u05B8"), 1); // Hebrew
    EXPECT_EQ(columnsOf("\u0628\u0651"), 1); // Arabic
    EXPECT_EQ(columnsOf(""), 0);
}

TEST(GlyphsOf, KeepsMarksWithTheirCharacter) {
    const auto glyphs = glyphsOf("ae\u0301");
    ASSERT_EQ(glyphs.size(), 2u);
    EXPECT_EQ(glyphs[1].text, "e\u0301");
    EXPECT_EQ(glyphs[1].columns, 1);
}

TEST(Fitted, CutsOrFillsToTheWidth) {
    EXPECT_EQ(fitted("Kick", 6), "Kick  ");
    EXPECT_EQ(fitted("Kick", 3), "Kic");
    EXPECT_EQ(fitted("Kick", 0), "");
}

TEST(Fitted, NeverSplitsAWideCharacter) {
    EXPECT_EQ(fitted("あい", 3), "あ ");
    EXPECT_EQ(fitted("あい", 4), "あい");
}

} // namespace
} // namespace lumbrine::remote
