#include "tools/blackbox/hui_words.h"

namespace lumbrine::blackbox {
namespace {

using enum Direction;
using Texts = std::vector<std::string>;

struct HUIWordsTest : testing::Test {
    Texts read(int surface, Direction direction, const Bytes& packet) {
        Texts texts;
        for (const HUIWord& word : words.read(surface, direction, packet))
            texts.push_back(word.text);
        return texts;
    }

    HUIWords words;
};

TEST_F(HUIWordsTest, TellPings) {
    EXPECT_EQ(read(0, fromHost, {0x90, 0x00, 0x00}), Texts{"ping"});
    EXPECT_EQ(read(0, fromHost, {0x80, 0x00, 0x40}), Texts{"ping"});
    EXPECT_EQ(read(0, toHost, {0x90, 0x00, 0x7F}), Texts{"pong"});
}

TEST_F(HUIWordsTest, TellAFaderWhenItsSecondHalfComes) {
    EXPECT_EQ(read(0, toHost, {0xB0, 0x02, 0x7F}), Texts{});
    EXPECT_EQ(read(0, toHost, {0xB0, 0x22, 0x7F}), Texts{"fader 3 1.0000"});
    EXPECT_EQ(read(1, fromHost, {0xB0, 0x07, 0x40, 0xB0, 0x27, 0x00}), Texts{"fader 16 0.5000"});
}

TEST_F(HUIWordsTest, KeepSurfacesAndDirectionsApart) {
    read(0, toHost, {0xB0, 0x0F, 0x02});
    read(1, toHost, {0xB0, 0x0F, 0x03});
    read(0, fromHost, {0xB0, 0x0C, 0x04});
    EXPECT_EQ(read(0, toHost, {0xB0, 0x2F, 0x42}), Texts{"key mute 3 down"});
    EXPECT_EQ(read(1, toHost, {0xB0, 0x2F, 0x02}), Texts{"key mute 12 up"});
    EXPECT_EQ(read(0, fromHost, {0xB0, 0x2C, 0x43}), Texts{"light solo 5 on"});
}

TEST_F(HUIWordsTest, TellTouchesAndBankKeys) {
    EXPECT_EQ(read(0, toHost, {0xB0, 0x0F, 0x00, 0xB0, 0x2F, 0x40}), Texts{"touch 1 down"});
    EXPECT_EQ(read(0, toHost, {0xB0, 0x0F, 0x0A, 0xB0, 0x2F, 0x43}), Texts{"key bank-right down"});
    EXPECT_EQ(read(0, toHost, {0xB0, 0x0F, 0x0E, 0xB0, 0x2F, 0x43}), Texts{"key zone-0e port-3 down"});
}

TEST_F(HUIWordsTest, TellDisplaysRingsAndMeters) {
    EXPECT_EQ(read(1, fromHost, {0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x01, 'K', 'i', 0x01, ' ', 0xF7}),
              Texts{"name 10 \"Ki? \""});
    EXPECT_EQ(read(0, fromHost, {0xB0, 0x11, 0x46}), Texts{"ring 2 6 centre"});
    EXPECT_EQ(read(0, fromHost, {0xA0, 0x03, 0x1C}), Texts{"meter 4 right 12"});
}

TEST_F(HUIWordsTest, TellEverythingElseAsBytesHoweverItIsCut) {
    EXPECT_EQ(read(0, fromHost, {0xFF}), Texts{"bytes ff"});
    EXPECT_EQ(read(0, fromHost, {0xF0, 0x01}), Texts{"bytes f0 01"});
    EXPECT_EQ(read(0, fromHost, {0xB0, 0x02}), Texts{"bytes b0 02"});
    EXPECT_EQ(read(0, fromHost, {0xC0, 0x02, 0x05, 0x90}), (Texts{"bytes c0 02", "bytes 05", "bytes 90"}));
    EXPECT_EQ(read(0, fromHost, {}), Texts{});
}

} // namespace
} // namespace lumbrine::blackbox
