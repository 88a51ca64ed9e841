// Automation modes as one byte: the low three bits are the mode, bit 3 marks trim. How they are spelled:
// hands/automation_mode_text.h.
#pragma once

#include <cstdint>

namespace lumbrine {

inline constexpr std::uint8_t autoModeUnknown = 0;

} // namespace lumbrine
