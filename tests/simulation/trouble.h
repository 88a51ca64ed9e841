// The time in which the phones act and everything else goes wrong, as far as the scenario has it.
#pragma once

#include "simulator/seeded_random.h"
#include "tests/simulation/host_troubles.h"
#include "tests/simulation/storm.h"
#include "tests/simulation/world.h"

#include <functional>
#include <vector>

namespace lumbrine::simulation {

class Trouble {
public:
    explicit Trouble(World& simulatedWorld);

    // Lets that time pass.
    void run();

    // See HostTroubles.
    TimePoint tracksSince() const { return ofHost.tracksSince(); }

    // When the host did not do what a host does, with what that leaves behind.
    const std::vector<Stretch>& disturbances() const { return disturbed; }

private:
    void strike();
    void silence(int surface, Duration duration);
    void flap();
    void stick();
    void releasePorts();
    void actAsUser();
    void useTransport();
    void failService();
    void failScreen();
    void withdrawPermission();
    void changeComment();
    void disturb(Duration length);
    Duration absence();

    World& world;
    SeededRandom chance;
    Storm storm;
    std::vector<std::function<void()>> kinds; // that this scenario has
    std::vector<Stretch> disturbed;
    std::uint64_t remarks = 0;
    HostTroubles ofHost;
};

} // namespace lumbrine::simulation
