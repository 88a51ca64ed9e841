// What the receiver sends to whom, and how much of it.
#pragma once

#include "tests/simulation/owner_oracle.h"
#include "tests/simulation/pauses.h"
#include "tests/simulation/recording_sockets.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

// Each hello of the client in control has its pong at once. The full state goes to one client at most once in 250 ms,
// and of its rows no more than a portion at a pace of 2,000 a second. Refusals are at most 50 a second for each address
// and 1,000 in all.
std::vector<std::string> checkAnswers(const SentDatagrams& sent, const Acceptance& acceptance,
                                      const Pauses& pauses = {});

} // namespace lumbrine::simulation
