#include "base/utf8.h"

#include <array>
#include <cstdint>
#include <sstream>
#include <string_view>

namespace lumbrine {
namespace {

// What a text begins with, in words: "U+E9 in 2", or "no character in 1".
std::string beginOf(std::string_view text) {
    const auto [code, length] = firstCharacter(text);
    std::ostringstream words;
    if (code) {
        words << "U+" << std::hex << std::uppercase << static_cast<std::uint32_t>(*code);
    } else {
        words << "no character";
    }
    words << " in " << std::dec << length;
    return words.str();
}

TEST(FirstCharacter, HasItsCodePointAndItsBytes) {
    EXPECT_EQ(beginOf(std::string_view("\0", 1)), "U+0 in 1");
    EXPECT_EQ(beginOf("Kick"), "U+4B in 1");
    EXPECT_EQ(beginOf("\x7F"), "U+7F in 1");
    EXPECT_EQ(beginOf("\xC2\x80"), "U+80 in 2");
    EXPECT_EQ(beginOf("\xDF\xBF"), "U+7FF in 2");
    EXPECT_EQ(beginOf("\xE0\xA0\x80"), "U+800 in 3");
    EXPECT_EQ(beginOf("ボーカル"), "U+30DC in 3");
    EXPECT_EQ(beginOf("\xED\x9F\xBF"), "U+D7FF in 3");
    EXPECT_EQ(beginOf("\xEF\xBF\xBF"), "U+FFFF in 3");
    EXPECT_EQ(beginOf("\xF0\x90\x80\x80"), "U+10000 in 4");
    EXPECT_EQ(beginOf("\xF4\x8F\xBF\xBF"), "U+10FFFF in 4");
}

TEST(FirstCharacter, IsNoneForOverlongFormsSurrogatesAndWhatIsBeyondTheLastOne) {
    for (const char* text :
         {"\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xE0\x9F\xBF", "\xF0\x80\x80\x80", "\xF0\x8F\xBF\xBF",
          "\xED\xA0\x80", "\xED\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\x80", "\xFF"})
        EXPECT_EQ(beginOf(text), "no character in 1");
}

TEST(FirstCharacter, IsNoneWhereItBreaksOff) {
    EXPECT_EQ(beginOf("\xC3"), "no character in 1");
    EXPECT_EQ(beginOf("\xC3("), "no character in 1");
    EXPECT_EQ(beginOf("\xE3\x81"), "no character in 2");
    EXPECT_EQ(beginOf("\xE3\x81x"), "no character in 2");
    EXPECT_EQ(beginOf("\xF0\x9F\x8E"), "no character in 3");
    EXPECT_EQ(beginOf("\xF0\x9F\xF0\x9F"), "no character in 2");
}

TEST(UTF8, IsToldFromOtherBytes) {
    for (const char* text :
         {"", "Kick", "\x7F", "é", "ボーカル", "🎚", "\xED\x9F\xBF", "\xEE\x80\x80", "\xF4\x8F\xBF\xBF"})
        EXPECT_TRUE(isUTF8(text)) << text;
    for (const char* text : {"\x80", "\xC1\xBF", "\xC3", "\xC3(", "\xE0\x9F\xBF", "\xE3\x81", "\xED\xA0\x80",
                             "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "Kick\xFE"})
        EXPECT_FALSE(isUTF8(text));
    EXPECT_TRUE(isUTF8(std::string_view("a\0b", 3)));
}

TEST(UTF8, IsToldFromOtherBytesWhereverTheyStand) {
    for (std::size_t length = 1; length < 40; ++length) {
        for (std::size_t at = 0; at < length; ++at) {
            std::string text(length, 'x');
            EXPECT_TRUE(isUTF8(text));
            for (const char alone : {'\x80', '\xE3', '\xFF'}) {
                text[at] = alone;
                EXPECT_FALSE(isUTF8(text));
            }
        }
    }
}

// One beyond the first 128, by the value that the bytes spell: no longer than it needs, no surrogate, none beyond the
// last character.
bool spellsOneCharacter(const std::string& text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    const std::size_t length = lead < 0xC0 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF8 ? 4 : 0;
    if (length != text.size()) return false;
    unsigned value = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0) != 0x80) return false;
        value = value << 6 | (next & 0x3FU);
    }
    constexpr std::array<unsigned, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
    return value >= smallest[length] && (value < 0xD800 || value > 0xDFFF) && value <= 0x10FFFF;
}

TEST(UTF8, IsTheShortestSpellingOfACharacter) {
    const std::array<std::string, 9> ends{"",         "\x7F",     "\x80",     "\xBF",    "\xC0",
                                          "\x80\x7F", "\x80\x80", "\xBF\xBF", "\xBF\xC0"};
    for (int lead = 0x80; lead < 256; ++lead) {
        const std::size_t longest = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        for (int second = 0; second < 256; ++second) {
            for (const std::string& end : ends) {
                const std::string text = std::string{static_cast<char>(lead), static_cast<char>(second)} + end;
                if (text.size() > longest) continue;
                ASSERT_EQ(isUTF8(text), spellsOneCharacter(text)) << std::hex << lead << " " << second;
            }
        }
    }
}

TEST(UTF8, IsLeftAsItIsByRepairing) {
    EXPECT_EQ(repairedUTF8("Kick é ボーカル 🎚"), "Kick é ボーカル 🎚");
    EXPECT_EQ(repairedUTF8(""), "");
}

// The replacements that the Unicode standard recommends (chapter 3.9, its own examples).
TEST(UTF8, GetsOneReplacementForEachSequenceThatBreaksOff) {
    EXPECT_EQ(repairedUTF8("\xE3\x81"), "\uFFFD");
    EXPECT_EQ(repairedUTF8("\xE3\x81 x"), "\uFFFD x");
    EXPECT_EQ(repairedUTF8("\xF0\x9F\x8E"
                           "Bass"),
              "\uFFFDBass");
    EXPECT_EQ(repairedUTF8("\xF1\x80\x80\xE1\x80\xC2"
                           "b\x80"
                           "c\x80\xBF"
                           "d"),
              "\uFFFD\uFFFD\uFFFDb\uFFFDc\uFFFD\uFFFDd");
}

TEST(UTF8, GetsAReplacementForEachByteThatStartsNoCharacter) {
    EXPECT_EQ(repairedUTF8("\xFF\xFE"), "\uFFFD\uFFFD");
    EXPECT_EQ(repairedUTF8("\xC0\xAF"), "\uFFFD\uFFFD");
    EXPECT_EQ(repairedUTF8("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(repairedUTF8("\xE0\x80\xAF"), "\uFFFD\uFFFD\uFFFD");
}

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

TEST(UTF8Clamp, CountsASequenceThatIsNotUTF8AsACharacter) {
    EXPECT_EQ(utf8Clamp("\xE3\x81", 1), ""); // cut in the middle of a character
    EXPECT_EQ(utf8Clamp("\xE3\x81", 2), "\xE3\x81");
    EXPECT_EQ(utf8Clamp("\xE0\x80\x80", 2), "\xE0\x80"); // overlong: three bytes that start no character
}

TEST(UTF8Clamp, TakesBytesThatStartNoCharacterOneByOne) {
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

TEST(OnOneLine, LeavesOrdinaryTextAlone) {
    EXPECT_EQ(onOneLine("✓ Kick é ボーカル 🎚"), "✓ Kick é ボーカル 🎚");
    EXPECT_EQ(onOneLine(""), "");
}

TEST(OnOneLine, PutsOneBlankForEachRunOfControlCharacters) {
    EXPECT_EQ(onOneLine("one\r\ntwo\tthree"), "one two three");
    EXPECT_EQ(onOneLine("\x1B[31mred\x7F"), " [31mred ");
    EXPECT_EQ(onOneLine("a\x1F"
                        "b\u009F"
                        "c"),
              "a b c");
    EXPECT_EQ(onOneLine("a~\u00A0b"), "a~\u00A0b");
    EXPECT_EQ(onOneLine("a\u0085b\u2028c\u2029d"), "a b c d");
    EXPECT_EQ(onOneLine(std::string("nul\0nul", 7)), "nul nul");
}

TEST(OnOneLine, RepairsWhatIsNotUTF8) {
    EXPECT_EQ(onOneLine("a\xFF\nb"), "a\uFFFD b");
}

} // namespace
} // namespace lumbrine
