// The state of the view that the user controls: cursor, marks, prompt.
#pragma once

#include "base/bilingual.h"
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
    std::uint16_t first = 0; // the track on the top line
    std::set<std::uint16_t> marked;
};

struct ViewState {
    LinkState link = LinkState::searching;
    std::string receiver; // "192.168.1.2:52700"; empty until one is found
    Page page = Page::strips;
    Strip cursor = *Strip::of(0);
    std::array<bool, stripCount> held{}; // faders that this client holds
    SessionList session;

    // The bank position a moment ago. While the receiver reads an automation mode, it reports the position as unknown
    // for a fraction of a second, and the page must not flicker.
    std::optional<std::uint16_t> lastOffset = {};

    bool blinkOn = true; // blinking lights are on now
    bool help = false;
    Prompt prompt = Prompt::none;
    std::string typed; // the input at the prompt
    Bilingual text{false};
};

// The session track on the first strip, or the last known one. Absent when it has been unknown for a while.
inline std::optional<std::uint16_t> offsetOf(const SessionPicture& picture, const ViewState& view) {
    return picture.bankOffset ? picture.bankOffset : view.lastOffset;
}

} // namespace lumbrine::remote
