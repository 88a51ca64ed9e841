#include "base/composed_text.h"

#include <gtest/gtest.h>

namespace lumbrine {
namespace {

TEST(ComposedText, PutsAccentsAndVoicingMarksOnTheirLetters) {
    EXPECT_EQ(composed("Zoe\u0308"), "Zo\u00EB");
    EXPECT_EQ(composed("\u30D8\u309A\u30EA\u30D5\u30A7\u30E9\u30EB"), "\u30DA\u30EA\u30D5\u30A7\u30E9\u30EB");
    EXPECT_EQ(composed("\u304B\u3099\u304D\u3099"), "\u304C\u304E");
    EXPECT_EQ(composed("\u0438\u0306"), "\u0439");
}

TEST(ComposedText, PutsSeveralMarksOnOneLetter) {
    EXPECT_EQ(composed("Vie\u0323\u0302t"), "Vi\u1EC7t");
    EXPECT_EQ(composed("\u03B1\u0313\u0301"), "\u1F04");
}

TEST(ComposedText, PutsKoreanLettersTogether) {
    EXPECT_EQ(composed("\u1112\u1161\u11AB\u1100\u1173\u11AF"), "\uD55C\uAE00");
    EXPECT_EQ(composed("\uD55C\u11AB"), "\uD55C\u11AB");
}

TEST(ComposedText, LeavesEverythingElseAsItIs) {
    for (const char* text :
         {"", "Kick 1", "\u00E9", "ドラム", "\u0301first", "q\u0301", "🎹\u0301", "\xFF\xCC", "e\xCC"})
        EXPECT_EQ(composed(text), text);
    EXPECT_EQ(composed(std::string("e\0\u0301", 4)), std::string("e\0\u0301", 4));
}

TEST(ComposedText, IsTheSameWhenItIsComposedAgain) {
    const std::string once = composed("A\u030Angstro\u0308m \u30D0\u3099");
    EXPECT_EQ(composed(once), once);
}

} // namespace
} // namespace lumbrine
