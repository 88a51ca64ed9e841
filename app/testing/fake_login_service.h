// A login service that the test decides about.
#pragma once

#include "platform/api/login_service.h"

#include <optional>
#include <string>

namespace lumbrine {

class FakeLoginService final : public LoginService {
public:
    bool enabled = false;
    std::optional<std::string> failure; // of every change
    int changes = 0;                    // that were asked for

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
