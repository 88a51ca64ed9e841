// Whether the receiver leaves alone who is no client: another receiver, and itself.
#pragma once

#include "tests/simulation/evidence.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

// What only a receiver says is neither answered nor makes anybody a client.
std::vector<std::string> checkStrangers(const Evidence& evidence);

} // namespace lumbrine::simulation
