// What the person at the terminal has done to the view: where the cursor stands, what is marked, what is being typed.
#pragma once

#include "base/strip.h"
#include "remote/remote_client.h"

#include <array>
#include <cstdint>
#include <optional>
#include <set>
#include <string>

namespace lumbrine::remote {

enum class Page { strips, session };
enum class Prompt { none, goToTrack, autoMode, pan, fader };

// The list of the session's tracks. Tracks are session indices.
struct SessionList {
    std::uint16_t cursor = 0;
    std::uint16_t first = 0; // the track on the uppermost line
    std::set<std::uint16_t> marked;
};

struct ViewState {
    LinkState link = LinkState::searching;
    std::string receiver; // "192.168.1.2:52700"; empty while none was found
    Page page = Page::strips;
    Strip cursor = *Strip::of(0);
    std::array<bool, stripCount> held{}; // faders that are being moved from here
    SessionList session;

    // Where the surfaces were a moment ago. Whenever the receiver asks for an automation mode it loses the position for
    // a fraction of a second, and the page should not flicker.
    std::optional<std::uint16_t> lastOffset = {};

    bool blinkOn = true; // which half of the blinking it is
    bool help = false;
    Prompt prompt = Prompt::none;
    std::string typed; // behind the prompt
};

// The session track on the first strip; absent while it is unknown and was for a while.
inline std::optional<std::uint16_t> offsetOf(const SessionPicture& picture, const ViewState& view) {
    return picture.bankOffset ? picture.bankOffset : view.lastOffset;
}

} // namespace lumbrine::remote
