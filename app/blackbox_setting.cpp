#include "app/blackbox_setting.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace lumbrine {

namespace {

constexpr std::uint64_t mostMebibytes = 1024;

// Absent when the text is no number.
std::optional<std::uint64_t> mebibytesIn(const std::string& text) {
    if (text.find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
    std::uint64_t number = mostMebibytes;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return std::min(number, mostMebibytes);
}

} // namespace

std::optional<BlackboxSetting> blackboxSetting(const std::optional<std::string>& value,
                                               const std::optional<std::string>& stateFolder) {
    BlackboxSetting setting;
    if (stateFolder) setting.path = std::filesystem::path(*stateFolder) / "blackbox";
    if (!value || value->empty()) return setting;
    const auto mebibytes = mebibytesIn(*value);
    if (!mebibytes) {
        setting.path = *value;
        return setting;
    }
    if (*mebibytes == 0) return std::nullopt;
    setting.size = static_cast<std::size_t>(*mebibytes) << 20;
    return setting;
}

} // namespace lumbrine
