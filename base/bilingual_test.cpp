#include "base/bilingual.h"

namespace lumbrine {
namespace {

using Languages = std::vector<std::string>;

TEST(PrefersJapanese, WhenTheFirstLanguageBeginsWithJa) {
    EXPECT_TRUE(prefersJapanese(Languages{"ja-JP", "en-US"}));
    EXPECT_TRUE(prefersJapanese(Languages{"ja_JP.UTF-8"}));
}

TEST(PrefersJapanese, NotWhenJapaneseIsOnlyTheRegionOrALaterChoice) {
    EXPECT_FALSE(prefersJapanese(Languages{"en-JP"}));
    EXPECT_FALSE(prefersJapanese(Languages{"en-US", "ja-JP"}));
}

TEST(PrefersJapanese, NotWithoutAnyLanguage) {
    EXPECT_FALSE(prefersJapanese(Languages{}));
}

TEST(Bilingual, SaysTheFormOfItsLanguage) {
    EXPECT_EQ(Bilingual(false)("listening", "受信開始"), "listening");
    EXPECT_EQ(Bilingual(true)("listening", "受信開始"), "受信開始");
}

} // namespace
} // namespace lumbrine
