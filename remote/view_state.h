// What the person at the terminal has done to the view: where the cursor stands, what is being typed.
#pragma once

#include "base/strip.h"
#include "remote/remote_client.h"

#include <array>
#include <string>

namespace lumbrine::remote {

enum class Prompt { none, goToTrack, autoMode };

struct ViewState {
    LinkState link = LinkState::searching;
    std::string receiver; // "192.168.1.2:52700"; empty while none was found
    Strip cursor = *Strip::of(0);
    std::array<bool, stripCount> held{}; // faders that are being moved from here
    bool blinkOn = true;                 // which half of the blinking it is
    bool help = false;
    Prompt prompt = Prompt::none;
    std::string typed; // behind the prompt
};

} // namespace lumbrine::remote
