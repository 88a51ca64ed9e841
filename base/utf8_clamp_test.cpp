#include "base/utf8_clamp.h"

namespace lumbrine {
namespace {

TEST(UTF8Clamp, KeepsWholeCharactersOnly) {
    std::string name;
    for (int i = 0; i < 20; ++i)
        name += "あ";
    EXPECT_EQ(utf8Clamp(name, 48).size(), 48u);
    EXPECT_EQ(utf8Clamp(name, 47).size(), 45u);
}

TEST(UTF8Clamp, StopsAtTheFirstCharacterThatDoesNotFit) {
    EXPECT_EQ(utf8Clamp("aあb", 3), "a");
}

TEST(UTF8Clamp, LeavesShortTextAlone) {
    EXPECT_EQ(utf8Clamp("Kick", 48), "Kick");
    EXPECT_EQ(utf8Clamp("", 48), "");
    EXPECT_EQ(utf8Clamp("Kick", 0), "");
}

TEST(UTF8Clamp, CountsFourByteCharacters) {
    EXPECT_EQ(utf8Clamp("🎚🎚", 7), "🎚");
}

TEST(UTF8Clamp, TakesMalformedBytesOneByOne) {
    EXPECT_EQ(utf8Clamp("\xE3\x81", 1), "\xE3"); // cut in the middle of a character
    EXPECT_EQ(utf8Clamp("\xFF\xFE"
                        "a",
                        2),
              "\xFF\xFE"); // no lead byte at all
    EXPECT_EQ(utf8Clamp("\xE3"
                        "abc",
                        2),
              "\xE3"
              "a"); // a lead byte without its continuation
}

} // namespace
} // namespace lumbrine
