#include "base/composed_text.h"

#include <gtest/gtest.h>

#include <array>

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

TEST(ComposedText, KnowsEachMarkOnTheFirstAndTheLastOfItsLetters) {
    struct Pair {
        const char* apart;
        const char* together;
    };
    for (const Pair& pair : std::to_array<Pair>({
             {"A\u0300", "À"},   {"Ω\u0300", "Ὼ"},   {"A\u0301", "Á"},   {"῾\u0301", "῞"},   {"A\u0302", "Â"},
             {"ọ\u0302", "ộ"},   {"A\u0303", "Ã"},   {"y\u0303", "ỹ"},   {"A\u0304", "Ā"},   {"Υ\u0304", "Ῡ"},
             {"A\u0306", "Ă"},   {"Υ\u0306", "Ῠ"},   {"C\u0307", "Ċ"},   {"ſ\u0307", "ẛ"},   {"A\u0308", "Ä"},
             {"t\u0308", "ẗ"},   {"A\u0309", "Ả"},   {"y\u0309", "ỷ"},   {"A\u030A", "Å"},   {"y\u030A", "ẙ"},
             {"O\u030B", "Ő"},   {"у\u030B", "ӳ"},   {"C\u030C", "Č"},   {"h\u030C", "ȟ"},   {"A\u030F", "Ȁ"},
             {"ѵ\u030F", "ѷ"},   {"A\u0311", "Ȃ"},   {"u\u0311", "ȗ"},   {"α\u0313", "ἀ"},   {"ρ\u0313", "ῤ"},
             {"α\u0314", "ἁ"},   {"Ρ\u0314", "Ῥ"},   {"O\u031B", "Ơ"},   {"u\u031B", "ư"},   {"B\u0323", "Ḅ"},
             {"y\u0323", "ỵ"},   {"U\u0324", "Ṳ"},   {"u\u0324", "ṳ"},   {"A\u0325", "Ḁ"},   {"a\u0325", "ḁ"},
             {"S\u0326", "Ș"},   {"t\u0326", "ț"},   {"C\u0327", "Ç"},   {"h\u0327", "ḩ"},   {"A\u0328", "Ą"},
             {"o\u0328", "ǫ"},   {"D\u032D", "Ḓ"},   {"u\u032D", "ṷ"},   {"H\u032E", "Ḫ"},   {"h\u032E", "ḫ"},
             {"E\u0330", "Ḛ"},   {"u\u0330", "ṵ"},   {"B\u0331", "Ḇ"},   {"h\u0331", "ẖ"},   {"←\u0338", "↚"},
             {"⊵\u0338", "⋭"},   {"ἀ\u0342", "ἆ"},   {"ω\u0342", "ῶ"},   {"ἀ\u0345", "ᾀ"},   {"Ω\u0345", "ῼ"},
             {"か\u3099", "が"}, {"ヽ\u3099", "ヾ"}, {"は\u309A", "ぱ"}, {"ホ\u309A", "ポ"},
         }))
        EXPECT_EQ(composed(pair.apart), pair.together) << pair.together;
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
