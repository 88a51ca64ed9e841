// What the Mac's workspace knows of programs and settings.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace lumbrine {

// The process identifier of the first running application with that bundle identifier. Any thread.
std::optional<std::int32_t> findRunningApplication(std::string_view bundleIdentifier);

// Shows the page of the system's settings on which programs are allowed to read the screen. Main thread.
void openAccessibilitySettings();

} // namespace lumbrine
