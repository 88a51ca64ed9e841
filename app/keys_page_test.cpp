#include "app/keys_page.h"

#include <gtest/gtest.h>

namespace lumbrine {
namespace {

const Bilingual en{false};
const Bilingual ja{true};
constexpr TimePoint now{seconds(100'000)};
const PairingKey key = *PairingKey::parse("742BCM0SCXPZA154Z02S9P89HC");

std::string useAt(TimePoint last, const Bilingual& text = en) {
    return keysPage({{{key, "phone"}, last}}, {}, now, text).rows.at(0).use;
}

TEST(KeysPage, HasNameAndLettersOfEachKey) {
    const KeysPage page = keysPage({{{key, "phone"}}, {{key, "guest"}}}, {}, now, en);
    ASSERT_EQ(page.rows.size(), 2U);
    EXPECT_EQ(page.rows[0].letters, "742BCM0SCXPZA154Z02S9P89HC");
    EXPECT_EQ(page.rows[1].name, "guest");
}

TEST(KeysPage, SaysWhenAKeyWasUsedLast) {
    EXPECT_EQ(useAt(distantPast), "not used since the start");
    EXPECT_EQ(useAt(now - seconds(59)), "used just now");
    EXPECT_EQ(useAt(now - seconds(60)), "used 1 min ago");
    EXPECT_EQ(useAt(now - seconds(3599)), "used 59 min ago");
    EXPECT_EQ(useAt(now - seconds(7200)), "used 2 h ago");
    EXPECT_EQ(useAt(now - seconds(7200), ja), "2 時間前に使用");
}

TEST(KeysPage, SaysWhyTheSwitchCannotBeUsed) {
    EXPECT_EQ(keysPage({}, {.onlyPaired = true}, now, en).pairedAdvice, "");
    const KeysPage fixed = keysPage({}, {.onlyPaired = true, .isFixed = true}, now, en);
    EXPECT_EQ(fixed.pairedAdvice, "LUMBRINE_CLIENTS decides this.");
    EXPECT_TRUE(fixed.onlyPaired);
}

} // namespace
} // namespace lumbrine
