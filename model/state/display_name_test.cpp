#include "model/state/display_name.h"

namespace lumbrine {
namespace {

TEST(Display, ShowsTheNameCut) {
    EXPECT_TRUE(mayShow("Kick", "Kick In"));
    EXPECT_TRUE(mayShow("Kick", "Kick"));
    EXPECT_TRUE(mayShow("OH", "OH"));
    EXPECT_TRUE(mayShow("FX", " FX 1"));
}

TEST(Display, ShowsTheNameWithoutVowelsBlanksAndNumbers) {
    EXPECT_TRUE(mayShow("LdVx", "Lead Vox"));
    EXPECT_TRUE(mayShow("Tom", "Tom 12"));
    EXPECT_TRUE(mayShow("Snr2", "Snare 2"));
}

TEST(Display, ShowsNoOtherName) {
    EXPECT_FALSE(mayShow("Kick", "Snare Top"));
    EXPECT_FALSE(mayShow("Snr2", "Snare 3"));
    EXPECT_FALSE(mayShow("ick", "Kick"));
    EXPECT_FALSE(mayShow("kick", "Kick"));
    EXPECT_FALSE(mayShow("Kcik", "Kick In"));
    EXPECT_FALSE(mayShow("Kick", ""));
}

TEST(Display, ShowsBlanksOrQuestionMarksForWhatIsNotASCII) {
    EXPECT_TRUE(mayShow("", "ギターソロ"));
    EXPECT_TRUE(mayShow("????", "ギターソロ"));
    EXPECT_TRUE(mayShow("2", "ギター2"));
    EXPECT_TRUE(mayShow("?2", "声2"));
    EXPECT_TRUE(mayShow("", ""));
}

TEST(Display, MayBeBlankWhereOnlyANumberOrASideIsASCII) {
    EXPECT_TRUE(mayShow("", "보컬 1"));
    EXPECT_TRUE(mayShow("", "声 12"));
    EXPECT_TRUE(mayShow("", "鼓 L"));
    EXPECT_FALSE(mayShow("", "歌 Vox"));
    EXPECT_FALSE(mayShow("", "12"));
}

TEST(Display, IsBlankForNoNameThatBeginsWithASCII) {
    EXPECT_FALSE(mayShow("", "Kick"));
    EXPECT_FALSE(mayShow("", "A.ギター"));
    EXPECT_FALSE(mayShow("????", "Kick"));
}

} // namespace
} // namespace lumbrine
