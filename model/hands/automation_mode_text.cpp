#include "model/hands/automation_mode_text.h"

#include "base/blank_text.h"

#include <algorithm>
#include <array>

namespace lumbrine {

namespace {

struct Mode {
    std::uint8_t code;
    std::string_view shown;
    std::string_view name;
};

constexpr std::array<Mode, 9> modes{{
    {1, "Read", "read"},
    {2, "Tch", "touch"},
    {3, "Ltch", "latch"},
    {4, "Wrt", "write"},
    {5, "Off", "off"},
    {9, "TRd", "trim+read"},
    {10, "TTch", "trim+touch"},
    {11, "TLch", "trim+latch"},
    {12, "TWrt", "trim+write"},
}};

} // namespace

std::optional<std::uint8_t> parseAutoModeText(std::string_view text) {
    const auto mode = std::ranges::find(modes, trimSpaces(text), &Mode::shown);
    if (mode == modes.end()) return std::nullopt;
    return mode->code;
}

bool isAutoModeText(const std::string& text) {
    return parseAutoModeText(text).has_value() || text == "Trim";
}

std::string autoModeName(std::uint8_t code, Bilingual text) {
    const auto mode = std::ranges::find(modes, code, &Mode::code);
    return mode == modes.end() ? text("unknown", "不明") : std::string(mode->name);
}

} // namespace lumbrine
