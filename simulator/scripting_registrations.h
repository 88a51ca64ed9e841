// Who has registered with the scripting service, and under which session identifier.
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
    // Identifiers come from the seed, and none comes twice. A registration is good on the connection that it came by,
    // or on any when it outlives its connection.
    ScriptingRegistrations(std::uint64_t seed, bool outliveConnections)
        : chance(seed), outliveConnection(outliveConnections) {}

    // The new session's identifier. Only the last few hundred registrations are kept.
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
