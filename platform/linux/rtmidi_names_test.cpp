#include "platform/linux/rtmidi_names.h"

namespace lumbrine {
namespace {

TEST(RtMidiNames, AreFoundBetweenClientAndAddress) {
    EXPECT_TRUE(hasShortName("Lumbrine:Lumbrine 128:0", "Lumbrine"));
    EXPECT_TRUE(hasShortName("Lumbrine B:Lumbrine B 129:0", "Lumbrine B"));
    EXPECT_TRUE(hasShortName("Studio: left:Lumbrine 14:12", "Lumbrine"));
}

TEST(RtMidiNames, AreFoundWithoutAnAddress) {
    EXPECT_TRUE(hasShortName("Lumbrine-01:Lumbrine", "Lumbrine"));
    EXPECT_TRUE(hasShortName("Lumbrine:Lumbrine B", "Lumbrine B"));
}

TEST(RtMidiNames, AreWholeNames) {
    EXPECT_FALSE(hasShortName("Lumbrine:Lumbrine B 128:0", "Lumbrine"));
    EXPECT_FALSE(hasShortName("Lumbrine:My Lumbrine 128:0", "Lumbrine"));
    EXPECT_FALSE(hasShortName("Lumbrine:Midi Through 14:0", "Lumbrine"));
    EXPECT_FALSE(hasShortName("Lumbrine", "Lumbrine"));
    EXPECT_FALSE(hasShortName("", "Lumbrine"));
}

TEST(RtMidiNames, MayEndInNumbersThemselves) {
    EXPECT_TRUE(hasShortName("synth:Bank 2 20:1", "Bank 2"));
    EXPECT_TRUE(hasShortName("synth:Bank 2", "Bank 2"));
}

} // namespace
} // namespace lumbrine
