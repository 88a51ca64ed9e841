#include "simulator/short_name.h"

namespace lumbrine {
namespace {

std::string shown(std::string_view name, ShortNameRule rule, NonASCIIRule nonASCII = NonASCIIRule::questionMark) {
    const DisplayText text = shortName(name, rule, nonASCII);
    return {text.begin(), text.end()};
}

TEST(ShortName, CutsToFourCharacters) {
    EXPECT_EQ(shown("Snare Top", ShortNameRule::cut), "Snar");
    EXPECT_EQ(shown("Kick", ShortNameRule::cut), "Kick");
    EXPECT_EQ(shown("OH", ShortNameRule::cut), "OH  ");
    EXPECT_EQ(shown("", ShortNameRule::cut), "    ");
    EXPECT_EQ(shown("A.Gtr", ShortNameRule::cut), "A.Gt");
}

TEST(ShortName, DropsSmallVowelsUntilTheNameFits) {
    EXPECT_EQ(shown("Kick", ShortNameRule::vowels), "Kick"); // fits as it is
    EXPECT_EQ(shown("A 1", ShortNameRule::vowels), "A 1 ");  // with its blank
    EXPECT_EQ(shown("Guitar 1", ShortNameRule::vowels), "Gtr1");
    EXPECT_EQ(shown("Guitar 2", ShortNameRule::vowels), "Gtr2");
    EXPECT_EQ(shown("Piano", ShortNameRule::vowels), "Pian");  // no more than it needs
    EXPECT_EQ(shown("Organ", ShortNameRule::vowels), "Orgn");  // a capital stays
    EXPECT_EQ(shown("uneasy", ShortNameRule::vowels), "unsy"); // and so does the first character
    EXPECT_EQ(shown("Overhead L", ShortNameRule::vowels), "OvrL");
}

TEST(ShortName, LetsTracksShareANameWhenItCollides) {
    EXPECT_EQ(shown("Vox 1", ShortNameRule::colliding), "Vox ");
    EXPECT_EQ(shown("Vox 12", ShortNameRule::colliding), "Vox ");
    EXPECT_EQ(shown("OH L", ShortNameRule::colliding), "OH  ");
    EXPECT_EQ(shown("OH R", ShortNameRule::colliding), "OH  ");
    EXPECT_EQ(shown("Tom2", ShortNameRule::colliding), "Tom ");
    EXPECT_EQ(shown("808", ShortNameRule::colliding), "8   "); // something stays
    EXPECT_EQ(shown("L", ShortNameRule::colliding), "L   ");
}

TEST(ShortName, ReplacesEachCharacterThatIsNotASCII) {
    EXPECT_EQ(shown("ボーカル", ShortNameRule::cut, NonASCIIRule::questionMark), "????");
    EXPECT_EQ(shown("ボーカル", ShortNameRule::cut, NonASCIIRule::blank), "    ");
    EXPECT_EQ(shown("Aé1🎚", ShortNameRule::cut, NonASCIIRule::questionMark), "A?1?");
    EXPECT_EQ(shown("シ1", ShortNameRule::cut, NonASCIIRule::blank), " 1  ");
    EXPECT_EQ(shown("Vo\tx\x7F", ShortNameRule::cut), "Vo?x");
}

TEST(ShortName, TakesASequenceThatIsNotUTF8ForACharacter) {
    EXPECT_EQ(shown("\xE3\x81", ShortNameRule::cut), "?   ");
    EXPECT_EQ(shown("\xFFo", ShortNameRule::cut), "?o  ");
}

TEST(ShortName, WritesAccentedLettersInTheCharactersOfASurfaceWhereTheRuleSaysSo) {
    const DisplayText shown = shortName("Böße", ShortNameRule::cut, NonASCIIRule::huiCharacters);
    EXPECT_EQ(shown, (DisplayText{'B', 0x18, 0x1D, 'e'}));
    EXPECT_EQ(shortName("ñベé", ShortNameRule::cut, NonASCIIRule::huiCharacters), (DisplayText{0x7F, 0x7F, 0x0F, ' '}));
}

} // namespace
} // namespace lumbrine
