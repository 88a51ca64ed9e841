// Running applications and system settings, through NSWorkspace and NSRunningApplication.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace lumbrine {

// The process identifier of the first running application with this bundle identifier. Any thread.
std::optional<std::int32_t> findRunningApplication(std::string_view bundleIdentifier);

// Opens the page of the system settings where the user allows programs to use accessibility. Main thread.
void openAccessibilitySettings();

} // namespace lumbrine
