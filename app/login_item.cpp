#include "app/login_item.h"

#include <utility>

namespace lumbrine {

LoginItem::LoginItem(LoginService& loginService, Bilingual bilingual, std::function<void(const std::string&)> print)
    : service(loginService), text(bilingual), sink(std::move(print)) {}

void LoginItem::set(bool on) {
    const auto changed = on ? service.registerApplication() : service.unregisterApplication();
    if (!changed) sink(text("Failed to toggle login item: ", "LoginItem 切替失敗: ") + changed.error());
}

} // namespace lumbrine
