// Launching at login, as the user switches it.
#pragma once

#include "base/bilingual.h"
#include "model/receiver_model.h"
#include "platform/api/login_service.h"

#include <functional>
#include <string>

namespace lumbrine {

// Main thread. The platform keeps the registration, so ask after each change how it is.
class LoginItem {
public:
    // `print` gets the line that tells of a failure; it is for standard output, not for the activity log.
    LoginItem(LoginService& loginService, Bilingual bilingual,
              std::function<void(const std::string& line)> print = printLine);

    // Registers the application or takes it off; a failure is printed and changes nothing.
    void set(bool on);

    bool isEnabled() { return service.isEnabled(); }

private:
    LoginService& service;
    const Bilingual text;
    const std::function<void(const std::string&)> sink;
};

} // namespace lumbrine
