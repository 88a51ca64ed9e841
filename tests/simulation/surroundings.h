// The computer and the network while they make it hard for the receiver, as far as the scenario has it.
#pragma once

#include "simulator/seeded_random.h"
#include "tests/simulation/false_receiver.h"
#include "tests/simulation/second_receiver.h"
#include "tests/simulation/world.h"

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace lumbrine::simulation {

// Main thread.
class Surroundings {
public:
    // From now on.
    explicit Surroundings(World& simulatedWorld);

    // Everything is as it should be again: everybody is reachable, every thread runs, the strangers leave.
    void rest();

    // For how long the machine has slept.
    Duration slept() const { return sleep; }

private:
    // Something that happens now and again: each time it says when to come back.
    using Strike = std::function<Duration(SeededRandom& chance)>;
    struct Recurring {
        SeededRandom chance;
        TimePoint next;
        Strike strike;
    };

    void add(bool want, std::string_view name, const Strike& strike);
    void look();
    void cutOff(std::string address);
    Duration changeWiFi(SeededRandom& chance);
    Duration fillSocket(SeededRandom& chance);
    Duration sleepAndWake(SeededRandom& chance);

    World& world;
    std::vector<Recurring> recurring;
    std::unique_ptr<SecondReceiver> secondReceiver;
    std::unique_ptr<FalseReceiver> falseReceiver;
    Phone* silentPhone = nullptr;
    bool allAreSilent = false;
    bool socketIsFull = false;
    Duration sleep = Duration::zero();
    std::unique_ptr<RepeatingTimer> timer;
};

} // namespace lumbrine::simulation
