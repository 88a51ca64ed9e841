// One session in virtual time: the receiver, the simulated Pro Tools, the network and the phones, and what the checkers
// get to see of them.
#pragma once

#include "model/receiver_model.h"
#include "platform/virtual/memory_midi.h"
#include "simulator/simulated_pro_tools.h"
#include "tests/simulation/phone.h"
#include "tests/simulation/recording_sockets.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine::simulation {

// What a session leaves behind.
struct Evidence {
    std::vector<ReceivedDatagram> datagrams;           // as the receiver got them
    std::vector<std::vector<ReceivedPacket>> surfaces; // as the host got them
    TimePoint troubleEnded;
    remote::SessionPicture picture; // of the phone that said hello at the end
    bool phoneIsConnected = false;
    PublishedState model;   // at the same moment
    SimulatorSnapshot host; // at the same moment
    std::uint64_t traceHash = 0;
    Duration virtualTime = Duration::zero();
};

// Runs the session from its start to its quiet end.
Evidence runSession(const Scenario& scenario);

} // namespace lumbrine::simulation
