#include "web/gateway/qr_code.h"

#include <gtest/gtest.h>

namespace lumbrine::web {
namespace {

constexpr std::string_view address = "http://192.168.100.100:52780/#742BCM0SCXPZA154Z02S9P89HC";

TEST(QRCode, HasTheMarksOfAQRCodeInItsCorners) {
    const auto lines = qrCode(address, QRColours::lightBlocks);
    ASSERT_GT(lines.size(), 12U);
    EXPECT_TRUE(lines[0].starts_with("███████████"));
    EXPECT_TRUE(lines[1].starts_with("██ ▄▄▄▄▄ █"));
    EXPECT_TRUE(lines[1].ends_with("█ ▄▄▄▄▄ ██"));
    EXPECT_TRUE(lines[2].starts_with("██ █   █ █"));
    EXPECT_TRUE(lines[3].starts_with("██ █▄▄▄█ █"));
    EXPECT_TRUE(lines[4].starts_with("██▄▄▄▄▄▄▄█"));
}

TEST(QRCode, IsBlackOnWhiteOnATerminalOfAnyColours) {
    const auto lines = qrCode(address, QRColours::blackOnWhite);
    ASSERT_GT(lines.size(), 12U);
    EXPECT_TRUE(lines[1].starts_with("\033[30;107m  █▀▀▀▀▀█ "));
    for (const std::string& line : lines)
        EXPECT_TRUE(line.ends_with("\033[0m"));
}

TEST(QRCode, FitsATerminalOf80ColumnsAnd24Lines) {
    const std::string longest = "https://[2001:db8:1111:2222:3333:4444:5555:6666]:52780/#742BCM0SCXPZA154Z02S9P89HC";
    EXPECT_LE(qrCode(longest, QRColours::lightBlocks).size(), 22U);
}

TEST(QRCode, IsMissingForATextThatNoneHolds) {
    EXPECT_TRUE(qrCode(std::string(5'000, 'a'), QRColours::lightBlocks).empty());
    EXPECT_TRUE(qrCode("", QRColours::lightBlocks).empty());
}

} // namespace
} // namespace lumbrine::web
