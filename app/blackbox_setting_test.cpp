#include "app/blackbox_setting.h"

namespace lumbrine {
namespace {

const std::optional<std::string> folder = "/home/ann/.local/state/lumbrine";
constexpr std::size_t mebibyte = 1 << 20;

TEST(BlackboxSetting, IsSixteenMebibytesInTheStateFolder) {
    const BlackboxSetting usual{.path = "/home/ann/.local/state/lumbrine/blackbox", .size = 16 * mebibyte};
    EXPECT_EQ(blackboxSetting(std::nullopt, folder), usual);
    EXPECT_EQ(blackboxSetting("", folder), usual);
}

TEST(BlackboxSetting, IsNoneForZero) {
    EXPECT_EQ(blackboxSetting("0", folder), std::nullopt);
}

TEST(BlackboxSetting, TakesANumberForTheSize) {
    EXPECT_EQ(blackboxSetting("64", folder)->size, 64 * mebibyte);
    EXPECT_EQ(blackboxSetting("64", folder)->path, "/home/ann/.local/state/lumbrine/blackbox");
    EXPECT_EQ(blackboxSetting("99999", folder)->size, 1024 * mebibyte);
    EXPECT_EQ(blackboxSetting("99999999999999999999999999", folder)->size, 1024 * mebibyte);
}

TEST(BlackboxSetting, TakesAnythingElseForThePath) {
    const BlackboxSetting elsewhere{.path = "/var/tmp/evening", .size = 16 * mebibyte};
    EXPECT_EQ(blackboxSetting("/var/tmp/evening", folder), elsewhere);
    EXPECT_EQ(blackboxSetting("/var/tmp/evening", std::nullopt), elsewhere);
}

TEST(BlackboxSetting, HasNoPathWhereNoFolderIsKnown) {
    EXPECT_EQ(blackboxSetting(std::nullopt, std::nullopt)->path, "");
}

} // namespace
} // namespace lumbrine
