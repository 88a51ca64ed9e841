#include "tests/simulation/walk_actions.h"

#include <algorithm>
#include <optional>

namespace lumbrine::simulation {

namespace {

using Kind = WireAction::Kind;

constexpr Duration held = seconds(0.03);

bool isTouch(const WireAction& action) {
    return action.kind == Kind::edge && action.number < 8 && action.port == 0 && action.value == 1;
}

bool duringAWalk(const std::vector<JobRun>& runs, TimePoint at) {
    return std::ranges::any_of(runs, [at](const JobRun& run) { return run.job == Job::walk && run.mayHaveBeenAt(at); });
}

// The first that is not taken yet.
template <typename Wanted>
std::optional<std::size_t> find(const std::vector<WireAction>& wire, const std::vector<bool>& taken, std::size_t from,
                                Wanted wanted) {
    for (std::size_t i = from; i < wire.size(); ++i)
        if (!taken[i] && wanted(wire[i])) return i;
    return std::nullopt;
}

} // namespace

SplitWire splitWire(const std::vector<WireAction>& wire, const std::vector<WireAction>& asked,
                    const std::vector<JobRun>& runs, int surface, const Pauses& pauses) {
    SplitWire split;
    std::vector<bool> taken(wire.size());
    for (std::size_t touch = 0; touch < wire.size(); ++touch) {
        const WireAction& begin = wire[touch];
        if (!isTouch(begin) || !duringAWalk(runs, begin.at)) continue;
        const auto move = find(wire, taken, touch, [&](const WireAction& action) {
            return action.kind == Kind::fader && action.number == begin.number && pauses.explain(begin.at, action.at);
        });
        const auto release = find(wire, taken, touch, [&](const WireAction& action) {
            return action.kind == Kind::edge && action.number == begin.number && action.port == 0 &&
                   action.value == 0 && pauses.mayTake(begin.at, held, action.at);
        });
        if (!move || !release) continue;
        const auto isItsMove = [&](const WireAction& action) {
            return action.sameAs(wire[*move]) && pauses.explain(action.at, wire[*move].at);
        };
        if (std::ranges::any_of(asked, isItsMove)) continue; // a client may touch the same strip at that time
        taken[touch] = taken[*move] = taken[*release] = true;
        split.ofWalks.push_back({begin.at, begin.number + 8 * surface, wire[*move].value});
    }
    for (std::size_t i = 0; i < wire.size(); ++i)
        if (!taken[i]) split.ofClient.push_back(wire[i]);
    return split;
}

std::vector<std::string> checkWalkedFaders(const std::vector<WalkedFader>& walked, const Requests& requests) {
    std::vector<std::string> violations;
    std::vector<std::pair<TimePoint, int>> open; // the entries not played yet
    for (const WalkRequest& request : requests.walks)
        for (const auto& [member, value] : request.faders)
            open.emplace_back(request.at, value);
    for (const WalkedFader& fader : walked) {
        const auto entry = std::ranges::find_if(
            open, [&](const auto& asked) { return asked.first <= fader.at && asked.second == fader.value; });
        if (entry == open.end()) {
            violations.push_back("a walk moved strip " + std::to_string(fader.strip) + " to " +
                                 std::to_string(fader.value) + " at " +
                                 std::to_string(inSeconds(fader.at.time_since_epoch())) + " s, which nobody asked for");
        } else {
            open.erase(entry);
        }
    }
    return violations;
}

} // namespace lumbrine::simulation
