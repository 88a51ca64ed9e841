// The platform's registration of this application as one to start when the user logs in.
#pragma once

#include <expected>
#include <string>

namespace lumbrine {

// Main thread. The platform keeps the registration; it may change at any moment without us.
class LoginService {
public:
    virtual ~LoginService() = default;

    // Whether the application starts at login. False also where that cannot be told.
    virtual bool isEnabled() = 0;

    // The error is the platform's own text; nothing has changed then.
    virtual std::expected<void, std::string> registerApplication() = 0;
    virtual std::expected<void, std::string> unregisterApplication() = 0;
};

} // namespace lumbrine
