// Whether the receiver knew who was there, judged by the pings it answered and the datagrams it got.
#pragma once

#include "tests/simulation/evidence.h"
#include "tests/simulation/owner_oracle.h"
#include "tests/simulation/pauses.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

// Pro Tools is there for 2 s after a ping, the client for 5 s after a datagram, and there are 16 strips while both
// surfaces are pinged; each noticed by the next tick.
std::vector<std::string> checkPresence(const Evidence& evidence, const Acceptance& acceptance,
                                       const Pauses& pauses = {});

} // namespace lumbrine::simulation
