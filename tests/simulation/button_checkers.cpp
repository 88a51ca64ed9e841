#include "tests/simulation/button_checkers.h"

#include <algorithm>
#include <iterator>

namespace lumbrine::simulation {

namespace {

using Kind = WireAction::Kind;
using Violations = std::vector<std::string>;

constexpr int assignZone = 11;
constexpr int panPort = 2;
constexpr int sendAPort = 7;

constexpr Duration bankPress = seconds(0.03);
constexpr Duration step = seconds(0.06);
constexpr Duration tapTime = seconds(2); // from a tap to its press

bool isInZone(const WireAction& action, int zone) {
    return action.kind == Kind::edge && action.number == zone;
}

bool isEdge(const WireAction& action, int zone, int port, int value) {
    return isInZone(action, zone) && action.port == port && action.value == value;
}

// How often it is pressed for PAN so long after that time.
long pansAfter(const std::vector<WireAction>& wire, TimePoint begin, Duration length, const Pauses& pauses) {
    return std::ranges::count_if(wire, [&](const WireAction& action) {
        return isEdge(action, assignZone, panPort, 1) && pauses.mayFollow(begin, length, action.at);
    });
}

// Each press in the zone is let go after that time.
void checkEnds(Violations& violations, const std::vector<WireAction>& wire, int zone, Duration length,
               const Pauses& pauses) {
    std::vector<WireAction> ends;
    std::ranges::copy_if(wire, std::back_inserter(ends),
                         [&](const WireAction& action) { return isInZone(action, zone) && action.value == 0; });
    for (const WireAction& begin : wire) {
        if (!isInZone(begin, zone) || begin.value == 0) continue;
        const auto end = std::ranges::find_if(ends, [&](const WireAction& action) {
            // What stood still before it was pressed may be let go as soon as that is over.
            return action.port == begin.port && action.at >= begin.at && pauses.mayFollow(begin.at, length, action.at);
        });
        if (end == ends.end()) {
            violations.push_back("not held for its time: " + begin.text());
        } else {
            ends.erase(end);
        }
    }
    for (const WireAction& end : ends)
        violations.push_back("not held for its time: " + end.text());
}

// The oldest that the press may be for.
bool takeTap(std::vector<BankMoveRequest>& taps, const WireAction& action, const Pauses& pauses) {
    const auto tap = std::ranges::find_if(taps, [&](const BankMoveRequest& asked) {
        return asked.button == action.port && asked.at <= action.at &&
               action.at <= asked.at + tapTime + pauses.within(asked.at, action.at);
    });
    if (tap == taps.end()) return false;
    taps.erase(tap);
    return true;
}

// The surface's side is being set then, by send A and pan, and ends as the newest one that was asked for.
bool isBeingSet(const std::vector<WireAction>& wire, TimePoint at, const Pauses& pauses) {
    return std::ranges::any_of(wire, [&](const WireAction& before) {
        return isEdge(before, assignZone, sendAPort, 1) && pauses.earliest(before.at) <= at &&
               at <= before.at + 3 * step + pauses.within(before.at, at);
    });
}

} // namespace

Violations checkZones(const SurfaceActions& wires) {
    Violations violations;
    for (const auto& wire : wires)
        for (const WireAction& action : wire) {
            if (action.kind != Kind::edge) continue;
            const bool known = action.isOfStrip() ? action.port != 5 && action.port != 6
                                                  : action.number == bankZone || action.number == assignZone ||
                                                        action.number == modeZone;
            if (!known) violations.push_back("a button that nobody may press: " + action.text());
        }
    return violations;
}

Violations checkBankButtons(const SurfaceActions& wires, const std::vector<JobRun>& runs, const Requests& requests,
                            const Pauses& pauses) {
    Violations violations;
    std::vector<BankMoveRequest> taps = requests.bankMoves;
    for (std::size_t surface = 0; surface < wires.size(); ++surface) {
        checkEnds(violations, wires[surface], bankZone, bankPress, pauses);
        for (const WireAction& action : wires[surface]) {
            if (!isInZone(action, bankZone)) continue;
            if (surface != 0 || action.port > 3) violations.push_back("no bank button: " + action.text());
            if (action.value == 0) continue;
            const auto isOf = [&](const JobRun& run) { return run.mayHaveBeenAt(action.at); };
            const bool ofTap =
                std::ranges::any_of(runs, [&](const JobRun& run) { return run.job == Job::tap && isOf(run); });
            const bool ofOther =
                std::ranges::any_of(runs, [&](const JobRun& run) { return run.job != Job::tap && isOf(run); });
            if (!ofOther && !(ofTap && takeTap(taps, action, pauses)))
                violations.push_back("a bank button for no reason: " + action.text());
        }
    }
    return violations;
}

Violations checkAssignment(const SurfaceActions& wires, const Requests& requests, const Pauses& pauses) {
    Violations violations;
    for (const auto& wire : wires) {
        checkEnds(violations, wire, assignZone, step, pauses);
        for (const WireAction& action : wire) {
            if (!isInZone(action, assignZone) || action.value == 0) continue;
            // Forced to the left: send A, then pan; then pan once more on a surface that has to show the right.
            const auto sendAIsPressed = [&](int stepsAgo) {
                return std::ranges::any_of(wire, [&](const WireAction& before) {
                    return isEdge(before, assignZone, sendAPort, 1) &&
                           pauses.mayFollow(before.at, stepsAgo * step, action.at);
                });
            };
            if (action.port == sendAPort) {
                if (pansAfter(wire, action.at, 2 * step, pauses) == 0)
                    violations.push_back("left on send A: " + action.text());
            } else if (action.port != panPort) {
                violations.push_back("another assignment: " + action.text());
            } else if (std::ranges::none_of(requests.panSides,
                                            [&](TimePoint at) { return pauses.explain(at, action.at); }) &&
                       !sendAIsPressed(2) && !sendAIsPressed(3)) {
                violations.push_back("an assignment for no reason: " + action.text());
            }
        }
        for (const TimePoint at : requests.panSides)
            if (!isBeingSet(wire, at, pauses) &&
                pansAfter(wire, at, Duration::zero(), pauses) < std::ranges::count(requests.panSides, at))
                violations.push_back("the pan side was not changed at " +
                                     std::to_string(inSeconds(at.time_since_epoch())) + " s");
    }
    return violations;
}

} // namespace lumbrine::simulation
