// The user's switch for launch at login.
#pragma once

#include "base/bilingual.h"
#include "platform/api/login_service.h"

#include <functional>
#include <string>

namespace lumbrine {

// Main thread only. The platform stores the registration, so call isEnabled after each change to get the real state.
class LoginItem {
public:
    // `sink` is called with a line for each failure. The line is for standard output, not for the activity log.
    LoginItem(LoginService& service, Bilingual text, std::function<void(const std::string& line)> sink);

    // Registers or unregisters the application. A failure is printed and changes nothing.
    void set(bool on);

    bool isEnabled() { return service.isEnabled(); }

private:
    LoginService& service;
    const Bilingual text;
    const std::function<void(const std::string&)> sink;
};

} // namespace lumbrine
