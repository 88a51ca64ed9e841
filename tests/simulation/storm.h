// Commands by the dozen, all of one kind and within a moment, and often somebody else who takes over right after them.
#pragma once

#include "simulator/seeded_random.h"
#include "tests/simulation/world.h"

namespace lumbrine::simulation {

// Main thread. The world outlives it, and lets time pass until it has rested.
class Storm {
public:
    explicit Storm(World& simulatedWorld);

    void act(); // now and then, until `rest`
    void rest() { resting = true; }

private:
    Bytes command(std::uint64_t kind);
    std::vector<remote::Member> members();
    remote::Member anyTrack();
    Strip anyStrip();

    World& world;
    SeededRandom chance;
    bool resting = false;
};

} // namespace lumbrine::simulation
