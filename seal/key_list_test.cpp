#include "seal/key_list.h"

#include <gtest/gtest.h>

namespace lumbrine::seal {
namespace {

const PairingKey first = *PairingKey::parse("742BCM0SCXPZA154Z02S9P89HC");
const PairingKey second = *PairingKey::parse("014D2PF2DBSQQG28T5CY4TQKFF");

TEST(KeyList, IsReadAsItWasWritten) {
    const std::vector<NamedKey> keys{{first, "studio"}, {second, "Yuki の iPad"}};
    EXPECT_EQ(textOf(keys), "742BCM0SCXPZA154Z02S9P89HC studio\n014D2PF2DBSQQG28T5CY4TQKFF Yuki の iPad\n");
    EXPECT_EQ(keysIn(textOf(keys)), keys);
}

TEST(KeyList, LeavesOutWhatIsNoKey) {
    EXPECT_EQ(keysIn("\nnothing\n742BCM0SCXPZA154Z02S9P89H short\n" + first.text() + "\n\n"),
              (std::vector<NamedKey>{{first, ""}}));
    EXPECT_TRUE(keysIn("").empty());
}

TEST(KeyList, IsReadInEveryTruncation) {
    const std::string text = textOf({{first, "studio"}, {second, "guest"}});
    for (std::size_t size = 0; size <= text.size(); ++size) {
        const auto keys = keysIn(text.substr(0, size));
        EXPECT_EQ(keys.size(), (size >= 26 ? 1U : 0U) + (size >= 34 + 26 ? 1U : 0U)) << size;
    }
}

TEST(KeyList, EndsAfterSixteenKeys) {
    std::string text;
    for (std::uint8_t i = 0; i < 20; ++i)
        text += PairingKey(std::array<std::uint8_t, 16>{i}).text() + "\n";
    EXPECT_EQ(keysIn(text).size(), maxKeys);
}

TEST(KeyName, IsOneShortLine) {
    EXPECT_EQ(keyName("a\nb\x1B[0m"), "a b [0m");
    EXPECT_EQ(keyName(std::string(100, 'x')).size(), maxNameBytes);
}

} // namespace
} // namespace lumbrine::seal
