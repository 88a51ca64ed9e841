// Launching at login on Linux desktops: a desktop entry in the user's autostart folder.
#pragma once

#include "platform/api/login_service.h"
#include "platform/api/system_info.h"

#include <string>
#include <string_view>

namespace lumbrine {

class XdgAutostart final : public LoginService {
public:
    struct Place {
        std::string folder;  // "/home/anna/.config/autostart"; empty when the user has no home
        std::string program; // what is to be started, with its full path

        // Where this user's desktop looks, and the program that runs.
        static Place of(const SystemInfo& system);
    };

    explicit XdgAutostart(Place place);

    // True when the entry is there and neither it nor the desktop's settings program has switched it off.
    bool isEnabled() override;

    // Writes the entry anew, all of it or nothing.
    std::expected<void, std::string> registerApplication() override;

    // Takes the entry away. That there is none is fine.
    std::expected<void, std::string> unregisterApplication() override;

private:
    const std::string folder;
    const std::string path;
    const std::string program;
};

// The entry for a program, and whether an entry starts anything.
std::string autostartEntry(std::string_view program);
bool startsAtLogin(std::string_view entry);

} // namespace lumbrine
