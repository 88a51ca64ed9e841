#include "model/state/configuration.h"

namespace lumbrine {

std::optional<std::uint16_t> parsePort(std::string_view text) {
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    if (text.empty()) return std::nullopt;
    std::uint32_t value = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') return std::nullopt;
        value = value * 10 + static_cast<std::uint32_t>(c - '0');
        if (value > 0xFFFF) return std::nullopt;
    }
    if (negative && value != 0) return std::nullopt;
    return static_cast<std::uint16_t>(value);
}

Configuration Configuration::read(const SystemInfo& system) {
    const auto clients = system.environment("LUMBRINE_CLIENTS");
    return {
        .port = parsePort(system.environment("QV_PORT").value_or("")).value_or(defaultPort),
        .noBonjour = system.environment("QV_NO_BONJOUR").has_value(),
        .debug = system.environment("QV_DEBUG").has_value(),
        .clients = {.onlyPaired = clients == "paired", .isFixed = clients.has_value()},
    };
}

} // namespace lumbrine
