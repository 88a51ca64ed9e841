// Launch at login by the system's registry of login items.
#pragma once

#include "base/bilingual.h"
#include "platform/api/login_service.h"

namespace lumbrine {

// The registry is there since macOS 13 and is looked for by name when it is asked, so the program starts on older
// systems too. There nothing is enabled and registering fails.
class MainAppLoginService final : public LoginService {
public:
    explicit MainAppLoginService(Bilingual bilingual) : text(bilingual) {}

    // An application that the user has yet to approve in the settings is not enabled.
    bool isEnabled() override;
    std::expected<void, std::string> registerApplication() override;
    std::expected<void, std::string> unregisterApplication() override;

private:
    std::expected<void, std::string> change(bool on);

    const Bilingual text;
};

} // namespace lumbrine
