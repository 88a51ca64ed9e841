// For tests: a login service whose state and failures the test sets.
#pragma once

#include "platform/api/login_service.h"

#include <optional>
#include <string>

namespace lumbrine {

class FakeLoginService final : public LoginService {
public:
    bool enabled = false;
    std::optional<std::string> failure; // when set, every change fails with it
    int changes = 0;                    // the number of attempted changes

    bool isEnabled() override { return enabled; }
    std::expected<void, std::string> registerApplication() override { return change(true); }
    std::expected<void, std::string> unregisterApplication() override { return change(false); }

private:
    std::expected<void, std::string> change(bool on) {
        ++changes;
        if (failure) return std::unexpected(*failure);
        enabled = on;
        return {};
    }
};

} // namespace lumbrine
