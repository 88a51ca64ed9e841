// One session of sealing clients in virtual time, from its start to the silence after they have gone.
#pragma once

#include "tests/simulation/sealed/sealed_evidence.h"
#include "tests/simulation/sealed/sealed_scenario.h"

namespace lumbrine::simulation {

SealedEvidence runSealedSession(const SealedScenario& scenario);

} // namespace lumbrine::simulation
