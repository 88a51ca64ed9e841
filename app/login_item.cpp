#include "app/login_item.h"

#include <utility>

namespace lumbrine {

LoginItem::LoginItem(LoginService& service, Bilingual text, std::function<void(const std::string&)> sink)
    : service(service), text(text), sink(std::move(sink)) {}

void LoginItem::set(bool on) {
    const auto changed = on ? service.registerApplication() : service.unregisterApplication();
    if (!changed) sink(text("Failed to toggle login item: ", "LoginItem 切替失敗: ") + changed.error());
}

} // namespace lumbrine
