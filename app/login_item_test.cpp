#include "app/login_item.h"
#include "app/testing/fake_login_service.h"

namespace lumbrine {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LoginItemTest : public testing::Test {
protected:
    LoginItem item(Bilingual text = Bilingual(false)) {
        return {service, text, [this](const std::string& line) { printed.push_back(line); }};
    }

    FakeLoginService service;
    std::vector<std::string> printed;
};

TEST_F(LoginItemTest, RegistersTheApplicationAndTakesItOff) {
    item().set(true);
    EXPECT_TRUE(service.enabled);
    EXPECT_TRUE(item().isEnabled());
    item().set(false);
    EXPECT_FALSE(service.enabled);
    EXPECT_FALSE(item().isEnabled());
    EXPECT_THAT(printed, IsEmpty());
}

TEST_F(LoginItemTest, PrintsOneLineWhenItFailsAndChangesNothing) {
    service.failure = "Operation not permitted";
    item().set(true);
    EXPECT_FALSE(item().isEnabled());
    EXPECT_THAT(printed, ElementsAre("Failed to toggle login item: Operation not permitted"));
}

TEST_F(LoginItemTest, PrintsItInJapanese) {
    service.enabled = true;
    service.failure = "Operation not permitted";
    item(Bilingual(true)).set(false);
    EXPECT_TRUE(item().isEnabled());
    EXPECT_THAT(printed, ElementsAre("LoginItem 切替失敗: Operation not permitted"));
}

} // namespace
} // namespace lumbrine
