// The colours of signs and states in every shell. Each is readable on the backgrounds of light desktops or of dark
// ones: its contrast is at least 4.5 to 1.
#pragma once

#include "app/diagnosis.h"
#include "app/log_lines.h"
#include "base/rgb_color.h"

#include <optional>

namespace lumbrine {

struct SignalColours {
    RGBColor good;
    RGBColor bad;
    RGBColor warning;
    RGBColor accent;
    RGBColor received;
    RGBColor quiet; // less important text
};
inline constexpr SignalColours lightSignals{0x187446, 0xB92F27, 0x8A5300, 0x1A64B6, 0x6D4BC4, 0x666666};
inline constexpr SignalColours darkSignals{0x4CC38A, 0xFF7B72, 0xF2B54B, 0x6CB0F5, 0xB9A3F3, 0xACACAC};

// Absent for what has the colour of ordinary text.
std::optional<RGBColor> colourOf(LogMarker marker, const SignalColours& signals);
std::optional<RGBColor> colourOf(CheckState state, const SignalColours& signals);

} // namespace lumbrine
