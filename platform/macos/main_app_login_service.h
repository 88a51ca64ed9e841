// Launch at login through SMAppService.
#pragma once

#include "base/bilingual.h"
#include "platform/api/login_service.h"

namespace lumbrine {

// SMAppService exists since macOS 13. It is looked up by name at run time, so that the program also starts on older
// systems; there, isEnabled returns false and registering fails.
class MainAppLoginService final : public LoginService {
public:
    explicit MainAppLoginService(Bilingual text) : text(text) {}

    // False as long as the user has not approved the application in the system settings.
    bool isEnabled() override;
    std::expected<void, std::string> registerApplication() override;
    std::expected<void, std::string> unregisterApplication() override;

private:
    std::expected<void, std::string> change(bool on);

    const Bilingual text;
};

} // namespace lumbrine
