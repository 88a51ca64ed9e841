// The colours of the lights on the strips, in every shell: those of Pro Tools, with letters that can be read on them.
#pragma once

#include "base/rgb_color.h"

namespace lumbrine {

inline constexpr RGBColor muteLight = 0xF0953A;
inline constexpr RGBColor soloLight = 0xF2D544;
inline constexpr RGBColor letterOnLight = 0x1C1F23; // contrast at least 7 to 1 on either

} // namespace lumbrine
