#include "simulator/scripting_registrations.h"

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>

namespace lumbrine {

std::string ScriptingRegistrations::add(std::string_view connection) {
    constexpr std::size_t mostKept = 256;
    std::array<char, 40> text{};
    const std::uint64_t high = chance.next(), low = chance.next();
    std::snprintf(text.data(), text.size(), "%08" PRIx64 "-%04" PRIx64 "-%04" PRIx64 "-%04" PRIx64 "-%012" PRIx64,
                  high >> 32, high >> 16 & 0xFFFF, high & 0xFFFF, low >> 48, low & 0xFFFF'FFFF'FFFF);
    registrations.push_back({text.data(), std::string(connection)});
    if (registrations.size() > mostKept) registrations.pop_front();
    return text.data();
}

bool ScriptingRegistrations::knows(std::string_view sessionID, std::string_view connection) const {
    return std::ranges::any_of(registrations, [&](const Registration& known) {
        return known.sessionID == sessionID && (outliveConnection || known.connection == connection);
    });
}

void ScriptingRegistrations::clear() {
    registrations.clear();
}

} // namespace lumbrine
