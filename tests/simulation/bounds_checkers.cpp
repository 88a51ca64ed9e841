#include "tests/simulation/bounds_checkers.h"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>

namespace lumbrine::simulation {

namespace {

constexpr int mostThreads = 16;
constexpr int mostWaiting = 32;
constexpr Duration longAgo = seconds(60);

bool tellsOfAnEvent(std::string_view line) {
    constexpr auto beginnings =
        std::to_array<std::string_view>({"[", "←", "→", "✓", "✗ Dropped", "▶", "iOS connected", "Second surface lost"});
    return std::ranges::any_of(beginnings, [line](std::string_view begin) { return line.starts_with(begin); });
}

} // namespace

std::vector<std::string> checkBounds(const Load& load) {
    std::vector<std::string> violations;
    if (load.threads > mostThreads) violations.push_back(std::to_string(load.threads) + " threads");
    for (const auto& [queue, waiting] : load.waiting)
        if (waiting > mostWaiting) violations.push_back(std::to_string(waiting) + " jobs wait in the queue " + queue);
    return violations;
}

std::vector<std::string> checkRepeats(const std::vector<std::pair<TimePoint, std::string>>& lines) {
    std::vector<std::string> violations;
    std::map<std::string_view, TimePoint> told;
    for (const auto& [at, line] : lines) {
        if (tellsOfAnEvent(line)) continue;
        const auto [last, isNew] = told.try_emplace(line, at);
        if (isNew) continue;
        if (at - last->second < longAgo)
            violations.push_back("told again after " + std::to_string(inSeconds(at - last->second)) + " s: " + line);
        last->second = at;
    }
    return violations;
}

} // namespace lumbrine::simulation
