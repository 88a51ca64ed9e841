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
    // Identifiers come from the seed, and none comes twice. A registration that outlives its connection is good on any
    // other one too.
    ScriptingRegistrations(std::uint64_t seed, bool outliveConnections)
        : chance(seed), outliveConnection(outliveConnections) {}

    // The new session's identifier. Only the last few hundred registrations are kept.
    std::string add(std::string_view connection);

    bool knows(std::string_view sessionID, std::string_view connection) const;

    void connectionClosed(std::string_view connection);
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
