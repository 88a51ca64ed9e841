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

TEST(UTF8Clamp, TakesTheLengthOfACharacterFromItsFirstByte) {
    for (int lead = 0; lead < 256; ++lead) {
        const std::string text = static_cast<char>(lead) + std::string("\x80\xBF\x80");
        const std::size_t length = lead >= 0xC2 && lead <= 0xDF   ? 2
                                   : lead >= 0xE0 && lead <= 0xEF ? 3
                                   : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                                  : 1;
        EXPECT_EQ(utf8Clamp(text, length - 1).size(), 0u) << lead;
        EXPECT_EQ(utf8Clamp(text, length).size(), length) << lead;
        EXPECT_EQ(utf8Clamp(text.substr(0, length), 9).size(), length) << lead;
    }
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
