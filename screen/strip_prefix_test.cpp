#include "screen/pt_track_list.h"

namespace lumbrine {
namespace {

std::string strip(std::string_view name) {
    return PTTrackList::stripPrefix(name);
}

TEST(StripPrefix, ANumberWithAFullStopAndASpaceGoes) {
    EXPECT_EQ(strip("12. Vocals"), "Vocals");
    EXPECT_EQ(strip("1. Kick"), "Kick");
    EXPECT_EQ(strip("1000. Kick"), "Kick");
    EXPECT_EQ(strip("1。 ドラム"), "ドラム");
}

TEST(StripPrefix, ANameWithoutOneStays) {
    EXPECT_EQ(strip("Vocals"), "Vocals");
    EXPECT_EQ(strip("12.Vocals"), "12.Vocals");
    EXPECT_EQ(strip("12 Vocals"), "12 Vocals");
    EXPECT_EQ(strip("ドラム。"), "ドラム。");
    EXPECT_EQ(strip("1。ドラム"), "1。ドラム");
    EXPECT_EQ(strip("12.\tVocals"), "12.\tVocals");
    EXPECT_EQ(strip(""), "");
    EXPECT_EQ(strip("."), ".");
}

TEST(StripPrefix, AnythingBeforeAnEarlyFullStopGoes) {
    EXPECT_EQ(strip("Mr. Smith"), "Smith");
    EXPECT_EQ(strip(". Smith"), "Smith");
    EXPECT_EQ(strip("12. "), "");
}

TEST(StripPrefix, AFullStopAfterEightCharactersIsPartOfTheName) {
    EXPECT_EQ(strip("Bass Gtr Take 3. final"), "Bass Gtr Take 3. final");
    EXPECT_EQ(strip("1234567. last that goes"), "last that goes");
    EXPECT_EQ(strip("12345678. first that stays"), "12345678. first that stays");
}

TEST(StripPrefix, CharactersAreCountedNotBytes) {
    EXPECT_EQ(strip("ドラムドラムド. last that goes"), "last that goes");
    EXPECT_EQ(strip("ドラムドラムドラ. first that stays"), "ドラムドラムドラ. first that stays");
    EXPECT_EQ(strip("ドラムドラムド。 last that goes"), "last that goes");
    EXPECT_EQ(strip("ドラムドラムドラ。 first that stays"), "ドラムドラムドラ。 first that stays");
    EXPECT_EQ(strip("🎸🎸🎸🎸🎸🎸🎸. Guitar"), "Guitar");
    EXPECT_EQ(strip("🎸🎸🎸🎸🎸🎸🎸🎸. Guitar"), "🎸🎸🎸🎸🎸🎸🎸🎸. Guitar");
}

TEST(StripPrefix, TheIdeographicFullStopIsLookedForFirst) {
    EXPECT_EQ(strip("1. a。 ドラム"), "ドラム");
    EXPECT_EQ(strip("1。 a. ドラム"), "a. ドラム");
    EXPECT_EQ(strip("1. ドラムの音です。 ドラム"), "ドラムの音です。 ドラム");
}

TEST(StripPrefix, OnlyTheFirstOfEachCounts) {
    EXPECT_EQ(strip("1. 2. Kick"), "2. Kick");
    EXPECT_EQ(strip("1。 2。 Kick"), "2。 Kick");
}

TEST(StripPrefix, BlanksAtBothEndsGoButNotTheEndsOfLines) {
    EXPECT_EQ(strip(" \t Vocals \t "), "Vocals");
    EXPECT_EQ(strip("12.  \t Lead Vocals\t"), "Lead Vocals");
    EXPECT_EQ(strip("\nVocals \n"), "\nVocals \n");
    EXPECT_EQ(strip("\r Vocals\r\n"), "\r Vocals\r\n");
    EXPECT_EQ(strip(" \t "), "");
    EXPECT_EQ(strip("1。 　ドラム　"), "ドラム"); // ideographic spaces
    EXPECT_EQ(strip("\u00A0\u2003Vocals\u202F\u3000\u205F\u1680"), "Vocals");
    EXPECT_EQ(strip("Lead  \t Vocals"), "Lead  \t Vocals");
}

TEST(StripPrefix, LeadingBlanksCountAmongTheEight) {
    EXPECT_EQ(strip("      1. Kick"), "Kick");
    EXPECT_EQ(strip("       1. Kick"), "1. Kick");
}

TEST(StripPrefix, BytesThatAreNoTextAreBroughtThrough) {
    EXPECT_EQ(strip("\xFF. Kick"), "Kick");
    EXPECT_EQ(strip("12. K\xE3\x83"), "K\xE3\x83");
    EXPECT_EQ(strip("\xE3\x80"), "\xE3\x80");
    EXPECT_EQ(strip("\x80\x80\x80\x80\x80\x80\x80. Kick"), "Kick");
    EXPECT_EQ(strip("\x80\x80\x80\x80\x80\x80\x80\x80. Kick"), "\x80\x80\x80\x80\x80\x80\x80\x80. Kick");
    EXPECT_EQ(strip(std::string_view("1. a\0b", 6)), std::string("a\0b", 3));
    for (int lead = 0; lead < 256; ++lead)
        for (std::size_t length = 0; length < 12; ++length)
            EXPECT_LE(strip(std::string(length, static_cast<char>(lead)) + ". x").size(), length + 3);
}

} // namespace
} // namespace lumbrine
