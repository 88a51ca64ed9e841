#include "platform/linux/qr_lines.h"

#include <gtest/gtest.h>

namespace lumbrine {
namespace {

const std::string address = "http://192.168.100.100:52780/#742BCM0SCXPZA154Z02S9P89HC";

TEST(QRLines, HasTheMarksOfAQRCodeInItsCorners) {
    const auto lines = qrLines(address, QRColours::lightBlocks);
    ASSERT_GT(lines.size(), 12U);
    EXPECT_TRUE(lines[0].starts_with("███████████"));
    EXPECT_TRUE(lines[1].starts_with("██ ▄▄▄▄▄ █"));
    EXPECT_TRUE(lines[1].ends_with("█ ▄▄▄▄▄ ██"));
    EXPECT_TRUE(lines[2].starts_with("██ █   █ █"));
    EXPECT_TRUE(lines[3].starts_with("██ █▄▄▄█ █"));
    EXPECT_TRUE(lines[4].starts_with("██▄▄▄▄▄▄▄█"));
}

TEST(QRLines, IsBlackOnWhiteOnATerminalOfAnyColours) {
    const auto lines = qrLines(address, QRColours::blackOnWhite);
    ASSERT_GT(lines.size(), 12U);
    EXPECT_TRUE(lines[1].starts_with("\033[30;107m  █▀▀▀▀▀█ "));
    for (const std::string& line : lines)
        EXPECT_TRUE(line.ends_with("\033[0m"));
}

TEST(QRLines, FitsATerminalOf80ColumnsAnd24Lines) {
    const std::string longest = "https://[2001:db8:1111:2222:3333:4444:5555:6666]:52780/#742BCM0SCXPZA154Z02S9P89HC";
    EXPECT_LE(qrLines(longest, QRColours::lightBlocks).size(), 23U);
}

TEST(QRLines, IsMissingForATextThatNoneHolds) {
    EXPECT_TRUE(qrLines(std::string(5'000, 'a'), QRColours::lightBlocks).empty());
    EXPECT_TRUE(qrLines("", QRColours::lightBlocks).empty());
}

} // namespace
} // namespace lumbrine
