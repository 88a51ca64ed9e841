// How the program that serves the page for browsers tells the user's other programs on this computer where: by a file
// that it keeps locked while it runs. What a killed program has left is not believed.
#pragma once

#include "platform/linux/user_settings.h"

#include <cstdint>
#include <optional>
#include <string>

namespace lumbrine {

// The pairing key of the page is in this file of the state folder.
inline constexpr const char* pageKeyName = "/web-key";

struct RunningPage {
    bool secure;                // by HTTPS
    std::uint16_t port;         // TCP
    std::uint16_t receiverPort; // UDP, of the receiver on this computer that it leads to

    friend bool operator==(const RunningPage&, const RunningPage&) = default;
};

class PageNotice {
public:
    // Stands in the state folder until it is destroyed. When there is one of another program, or the file cannot be
    // written, nothing happens.
    PageNotice(const std::string& stateFolder, const RunningPage& page);
    ~PageNotice();
    PageNotice(const PageNotice&) = delete;
    PageNotice& operator=(const PageNotice&) = delete;

private:
    const std::string path;
    int file = -1;
};

// Absent when no program runs that has left a notice.
std::optional<RunningPage> readPageNotice(const std::string& stateFolder);

// What a browser has to open to reach the receiver at this port of this computer, with the key:
// "http://192.168.1.2:52780/#742B...". Empty when no page leads there.
std::string pageAddress(const EnvironmentLookup& environment, const std::string& host, std::uint16_t receiverPort);

} // namespace lumbrine
