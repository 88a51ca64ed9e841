// Launch at login on Linux desktops, by a desktop entry in the user's autostart folder.
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
        std::string program; // full path of the program to start

        // The autostart folder of this user and the path of the running program.
        static Place of(const SystemInfo& system);
    };

    explicit XdgAutostart(Place place);

    // True when the entry exists, starts a program, and is not switched off, as a desktop's settings program may do.
    bool isEnabled() override;

    // Writes the entry. When that fails, the old entry is unchanged.
    std::expected<void, std::string> registerApplication() override;

    // Removes the entry. Succeeds also when there is none.
    std::expected<void, std::string> unregisterApplication() override;

private:
    const std::string folder;
    const std::string path;
    const std::string program;
};

// The text of the entry for a program, and whether the text of an entry starts a program at login.
std::string autostartEntry(std::string_view program);
bool startsAtLogin(std::string_view entry);

} // namespace lumbrine
