// What must hold of every session in which only clients with a key are let in, judged from its evidence alone.
#pragma once

#include "tests/simulation/sealed/sealed_evidence.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

using Violations = std::vector<std::string>;

// Each press that Pro Tools gets is one that a phone has made; each one happens once or not at all, and none that is
// more than 2 s older than a hello of its phone that had come before it.
Violations checkSealedPresses(const SealedEvidence& evidence);

// Each fader move that Pro Tools gets is one that a phone has made, and of each phone and strip in the order in which
// it made them. The faders end where the fingers have left them.
Violations checkSealedFaders(const SealedEvidence& evidence);

// The receiver sends to the addresses from which hellos of phones came first, sealed, and answers each of them once at
// most.
Violations checkSealedAnswers(const SealedEvidence& evidence);

// While nobody has a key, and after all phones have gone, neither Pro Tools nor anybody on the network gets a byte, but
// for the answers to pings, and releases.
Violations checkSilence(const SealedEvidence& evidence);

// All of them. Each violation begins with its checker's name.
Violations checkSealed(const SealedEvidence& evidence);

} // namespace lumbrine::simulation
