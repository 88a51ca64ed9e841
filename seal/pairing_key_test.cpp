#include "seal/pairing_key.h"

#include <gtest/gtest.h>

namespace lumbrine {
namespace {

constexpr std::string_view sample = "742BCM0SCXPZA154Z02S9P89HC";

TEST(PairingKey, WritesItsBitsInBase32) {
    std::array<std::uint8_t, 16> bits{};
    EXPECT_EQ(PairingKey(bits).text(), "00000000000000000000000000");
    bits.back() = 0x21;
    EXPECT_EQ(PairingKey(bits).text(), "00000000000000000000000011");
    bits.fill(0xFF);
    EXPECT_EQ(PairingKey(bits).text(), "7ZZZZZZZZZZZZZZZZZZZZZZZZZ");
    bits = {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF, 0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF};
    EXPECT_EQ(PairingKey(bits).text(), "014D2PF2DBSQQG28T5CY4TQKFF");
}

TEST(PairingKey, IsReadFromItsText) {
    ASSERT_TRUE(PairingKey::parse(sample));
    EXPECT_EQ(PairingKey::parse(sample)->text(), sample);
}

TEST(PairingKey, HasTheBitsThatItWasMadeOf) {
    std::array<std::uint8_t, 16> bits{0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF};
    EXPECT_EQ(PairingKey(bits).bits(), bits);
    bits.fill(0xFF);
    EXPECT_EQ(PairingKey(bits).bits(), bits);
    EXPECT_EQ(PairingKey(PairingKey::parse(sample)->bits()).text(), sample);
}

TEST(PairingKey, IsReadFromNoOtherText) {
    for (const char* text :
         {"", "742BCM0SCXPZA154Z02S9P89H", "742BCM0SCXPZA154Z02S9P89HC0", "742bcm0scxpza154z02s9p89hc",
          "842BCM0SCXPZA154Z02S9P89HC", "742BCM0SCXPZA154Z02S9P89HI", "742BCM0SCXPZA154Z02S9P89H-"})
        EXPECT_FALSE(PairingKey::parse(text)) << text;
}

TEST(PairingKey, IsEqualToItsWholeTextAlone) {
    const auto key = PairingKey::parse(sample);
    EXPECT_TRUE(key->is(sample));
    for (std::size_t i = 0; i < sample.size(); ++i) {
        std::string guess(sample);
        guess[i] = guess[i] == '0' ? '1' : '0';
        EXPECT_FALSE(key->is(guess));
        EXPECT_FALSE(key->is(sample.substr(0, i)));
    }
}

} // namespace
} // namespace lumbrine
