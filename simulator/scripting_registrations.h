// The registrations with the scripting service, each with its session identifier.
#pragma once

#include "simulator/seeded_random.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

namespace lumbrine {

class ScriptingRegistrations {
public:
    // Identifiers derive from the seed and are never repeated. A registration is valid on the connection by which it
    // was made, or on all connections when `outliveConnection` is true.
    ScriptingRegistrations(std::uint64_t seed, bool outliveConnection)
        : chance(seed), outliveConnection(outliveConnection) {}

    // Adds a registration and returns its session identifier. Only the last few hundred registrations are kept.
    std::string add(std::string_view connection);

    bool knows(std::string_view sessionID, std::string_view connection) const;

    void clear();

private:
    struct Registration {
        std::string sessionID;
        std::string connection;
    };

    SeededRandom chance;
    const bool outliveConnection;
    std::deque<Registration> registrations;
};

} // namespace lumbrine
