// Automation modes as one byte: the low three bits are the mode, bit 3 marks trim, 0 is unknown. And their two
// spellings: on a strip's display, and in the log.
#pragma once

#include "base/bilingual.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace lumbrine {

// What a display shows while the strip's AUTO switch is held: "Tch" is 2. Spaces around it do not matter, case does.
std::optional<std::uint8_t> parseAutoModeText(std::string_view text);

// Whether it is such a text, or "Trim", which stands for whatever mode a track has with trim.
bool isAutoModeText(const std::string& text);

// "touch", "trim+read"; "unknown" for anything that is no mode.
std::string autoModeName(std::uint8_t code, Bilingual text);

} // namespace lumbrine
