// What must hold of every session, judged from its evidence alone. Each checker returns what it found wrong, in words.
// What is due at a moment may be as late as threads stood still meanwhile, where a checker knows of pauses.
#pragma once

#include "tests/simulation/evidence.h"
#include "tests/simulation/owner_oracle.h"
#include "tests/simulation/pauses.h"
#include "tests/simulation/scenario.h"
#include "tests/simulation/surface_wire.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

using Violations = std::vector<std::string>;

// Fader moves, touches and presses on a surface are those that the device in control asked for: each one, once, in its
// order, at the moment its datagram came. What another device sends causes nothing. `wire` without what walks play.
Violations checkNothingLostNothingForged(const std::vector<WireAction>& wire, const std::vector<WireAction>& asked,
                                         const Pauses& pauses = {});

// Each press of a strip's switch is let go 60 ms later.
Violations checkPressesEnd(const std::vector<WireAction>& wire, const Pauses& pauses = {});

// When a device is replaced by another, the faders it holds are released within one tick; and nobody else's hand is
// ever released for it, but within a tick. To go when "hands" is on, which knows neither exception nor silent phones.
Violations checkReleases(const std::vector<WireAction>& wire, const std::vector<WireAction>& asked,
                         const Acceptance& acceptance, int surface, const Pauses& pauses = {});

// After a hello on a quiet line the client's picture is the receiver's, and the receiver's is the host's.
Violations checkPicture(const Evidence& evidence);

// All of them and those of the other headers that are switched on, on every surface, and that every sequence on the
// wires is whole. Each violation begins with its checker's name.
Violations checkAll(const Scenario& scenario, const Evidence& evidence);

} // namespace lumbrine::simulation
