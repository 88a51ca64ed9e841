#include "tests/simulation/host_habits.h"

#include <algorithm>
#include <set>

namespace lumbrine::simulation {
namespace {

constexpr std::uint64_t seeds = 300;

Switches allOn() {
    Switches switches;
    switches.switchOn("all");
    return switches;
}

TEST(HostHabits, HaveNamesOfTheirOwn) {
    std::set<std::string_view> names;
    for (const HostHabit& habit : hostHabits())
        EXPECT_TRUE(names.insert(habit.name).second) << habit.name;
}

TEST(HostHabits, AreChosenEachByAChanceOfItsOwn) {
    for (std::uint64_t seed = 1; seed <= seeds; ++seed) {
        SimulatorOptions options;
        std::vector<std::string_view> all = chooseHostHabits(seed, allOn(), options);
        std::erase_if(all, [](std::string_view name) { return !Switches().isOn(name); });
        EXPECT_EQ(chooseHostHabits(seed, {}, options), all) << seed;
    }
}

TEST(HostHabits, AreAllChosenBySomeSession) {
    std::set<std::string_view> chosen;
    for (std::uint64_t seed = 1; seed <= seeds; ++seed) {
        SimulatorOptions options;
        for (const std::string_view name : chooseHostHabits(seed, allOn(), options))
            chosen.insert(name);
    }
    EXPECT_EQ(chosen.size(), hostHabits().size());
}

TEST(HostHabits, LeaveNothingWrongWithTheOptions) {
    for (std::uint64_t seed = 1; seed <= seeds; ++seed) {
        SimulatorOptions options;
        chooseHostHabits(seed, allOn(), options);
        EXPECT_EQ(problemWith(options), std::nullopt) << seed;
    }
}

} // namespace
} // namespace lumbrine::simulation
