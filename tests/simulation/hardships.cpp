#include "tests/simulation/hardships.h"

#include "tests/simulation/scenario.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace lumbrine::simulation {

namespace {

struct Hardship {
    std::string_view name;
    bool Hardships::* member;
    std::uint64_t oneSessionIn;
};

constexpr std::array known{Hardship{"thread-stands-still", &Hardships::threadStandsStill, 6},
                           Hardship{"main-thread-stalls", &Hardships::mainThreadStalls, 6},
                           Hardship{"machine-sleeps", &Hardships::machineSleeps, 8},
                           Hardship{"wi-fi-goes-silent", &Hardships::wiFiGoesSilent, 6},
                           Hardship{"datagrams-stray", &Hardships::datagramsStray, 6},
                           Hardship{"phones-move", &Hardships::phonesMove, 6},
                           Hardship{"socket-is-full", &Hardships::socketIsFull, 8},
                           Hardship{"second-receiver", &Hardships::secondReceiver, 10},
                           Hardship{"false-receiver", &Hardships::falseReceiver, 10}};

// Pro Tools' and the phones' threads are not the receiver's; how late a host is has options of its own.
bool isOfTheReceiver(std::string_view threadName) {
    constexpr std::array beginnings{std::string_view("udp-receive"), std::string_view("com.tarnwick.lumbrine."),
                                    std::string_view("background"), std::string_view("midi in")};
    return std::ranges::any_of(beginnings, [&](std::string_view begin) { return threadName.starts_with(begin); });
}

} // namespace

std::string Hardships::text() const {
    std::string names;
    for (const Hardship& hardship : known)
        if (this->*hardship.member) names += ", " + std::string(hardship.name);
    return names;
}

Hardships hardshipsOf(std::uint64_t seed, const Switches& switches) {
    Hardships hardships;
    for (const Hardship& hardship : known)
        hardships.*hardship.member =
            chanceOf(seed, hardship.name).oneIn(hardship.oneSessionIn) && switches.isOn(hardship.name);
    if (chanceOf(seed, "timer-order").oneIn(2)) hardships.timerOrder = TimerOrder::whenSeen;
    return hardships;
}

VirtualRuntime::Options runtimeOptions(const Scenario& scenario) {
    const Hardships& hardships = scenario.hardships;
    VirtualRuntime::Options options{.seed = scenario.seed,
                                    .patience = scenario.patience,
                                    .turns = scenario.turns,
                                    .timerOrder = hardships.timerOrder};
    if (hardships.threadStandsStill)
        options.standstill = {
            .every = seconds(1), .shortest = seconds(0.02), .longest = seconds(0.5), .meets = isOfTheReceiver};
    if (hardships.mainThreadStalls)
        options.mainStandstill = {.every = seconds(5), .shortest = seconds(0.02), .longest = seconds(4)};
    return options;
}

} // namespace lumbrine::simulation
