// Registers this application with the platform, so that it starts when the user logs in.
#pragma once

#include <expected>
#include <string>

namespace lumbrine {

// Main thread only. The platform stores the registration, and the user may change it there at any time.
class LoginService {
public:
    virtual ~LoginService() = default;

    // True when the application starts at login. False when the platform cannot say.
    virtual bool isEnabled() = 0;

    // On failure nothing has changed, and the error is the platform's own text.
    virtual std::expected<void, std::string> registerApplication() = 0;
    virtual std::expected<void, std::string> unregisterApplication() = 0;
};

} // namespace lumbrine
