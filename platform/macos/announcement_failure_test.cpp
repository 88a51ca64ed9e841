#include "platform/macos/announcement_failure.h"

namespace lumbrine {
namespace {

const Bilingual english(false);
const Bilingual japanese(true);

TEST(AnnouncementFailure, SaysWhereTheLocalNetworkIsAllowed) {
    for (const int code : {-65555, -65570}) {
        EXPECT_EQ(announcementFailureText(code, english),
                  "this Mac does not let Lumbrine use the local network; allow it in System Settings ▸ Privacy & "
                  "Security ▸ Local Network (" +
                      std::to_string(code) + ")");
        EXPECT_EQ(announcementFailureText(code, japanese),
                  "この Mac が Lumbrine のローカルネットワーク利用を許可していません。システム設定 ▸ "
                  "プライバシーとセキュリティ ▸ ローカルネットワーク で許可してください (" +
                      std::to_string(code) + ")");
    }
}

TEST(AnnouncementFailure, HasAReasonInBothLanguagesForEachCodeThatIsKnown) {
    EXPECT_EQ(announcementFailureText(-72008, english),
              "the application was packed without the name of its service (-72008)");
    EXPECT_EQ(announcementFailureText(-72008, japanese), "アプリのパッケージにサービス名が登録されていません (-72008)");
    EXPECT_EQ(announcementFailureText(-65563, english), "the system's Bonjour service is not running (-65563)");
    EXPECT_EQ(announcementFailureText(-65563, japanese), "システムの Bonjour サービスが動いていません (-65563)");
    EXPECT_EQ(announcementFailureText(-72001, english), "the name is taken (-72001)");
    EXPECT_EQ(announcementFailureText(-72001, japanese), "名前が使われています (-72001)");
}

TEST(AnnouncementFailure, GivesTheNumberOfAnUnknownFailure) {
    EXPECT_EQ(announcementFailureText(-72000, english), "the system refused (-72000)");
    EXPECT_EQ(announcementFailureText(-72000, japanese), "システムが拒否しました (-72000)");
}

} // namespace
} // namespace lumbrine
