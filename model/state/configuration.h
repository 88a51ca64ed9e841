// What the environment decides, read once.
#pragma once

#include "model/state/paired_mode.h"
#include "platform/api/system_info.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace lumbrine {

inline constexpr std::uint16_t defaultPort = 52700;

struct Configuration {
    std::uint16_t port;
    bool noBonjour;     // QV_NO_BONJOUR is set, whatever its value
    bool debug;         // QV_DEBUG is set
    PairedMode clients; // LUMBRINE_CLIENTS is "paired": clients without a key are not let in; fixed when it is set

    static Configuration read(const SystemInfo& system);
};

// A decimal number of 16 bits with an optional sign; a minus is for zero alone. Anything else is absent.
std::optional<std::uint16_t> parsePort(std::string_view text);

} // namespace lumbrine
