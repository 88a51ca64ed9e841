#include "tests/simulation/studio.h"

#include "tests/simulation/calm.h"
#include "tests/simulation/trouble.h"
#include "tests/simulation/world.h"

namespace lumbrine::simulation {

Evidence runSession(const Scenario& scenario) {
    World world(scenario);
    Trouble trouble(world);
    trouble.run();
    Recovery recovery = Calm(world).run();
    Evidence evidence = world.collect();
    evidence.recovery = std::move(recovery);
    evidence.disturbances = trouble.disturbances();
    return evidence;
}

} // namespace lumbrine::simulation
