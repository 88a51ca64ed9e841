// The names that RtMidi gives to the ports of other programs.
#pragma once

#include <string_view>

namespace lumbrine {

// True when `listed` is a port with this short name: "client:short 128:0" in ALSA, "client:short" in JACK.
bool hasShortName(std::string_view listed, std::string_view shortName);

} // namespace lumbrine
