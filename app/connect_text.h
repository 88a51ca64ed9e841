// How a phone gets here: what the box beside the address line shows.
#pragma once

#include "base/bilingual.h"
#include "model/state/published_state.h"

#include <string>
#include <vector>

namespace lumbrine {

struct ConnectText {
    std::string title; // of the box
    std::string advice;
    std::vector<std::string> addresses; // "192.168.1.2:52700", the most likely one first
    std::string link;                   // of that one, for a QR code: "lumbrine://192.168.1.2:52700"
    std::string pageAdvice;             // about the page for browsers; empty when this computer does not serve it
    std::string pageLink;               // "http://192.168.1.2:52780/#742B...", for a QR code
    std::string keysButton;             // opens the keys of paired clients
    std::string closeButton;
};

// `reachable`: all numeric addresses of this computer on its networks. `pageLink`: empty when it serves no page.
ConnectText connectText(const PublishedState& published, const std::vector<std::string>& reachable,
                        const std::string& pageLink, const Bilingual& text);

} // namespace lumbrine
