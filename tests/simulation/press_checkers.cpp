#include "tests/simulation/press_checkers.h"

#include "tests/simulation/actions.h"
#include "tests/simulation/drop_checker.h"

#include <algorithm>

namespace lumbrine::simulation {

namespace {

using Kind = WireAction::Kind;
using Violations = std::vector<std::string>;

constexpr Duration press = seconds(0.06);
constexpr Duration patience = seconds(1);
constexpr Duration runOfDrops = seconds(10); // that one line stands for
constexpr Duration toTell = seconds(0.1);
constexpr Duration panSeek = 41 * seconds(0.035);

bool isOfSwitch(const WireAction& action) {
    const int port = action.port;
    return action.kind == Kind::edge && action.number < 8 && (port == 1 || port == 2 || port == 3 || port == 7);
}
bool isPress(const WireAction& action) {
    return isOfSwitch(action) && action.value == 1;
}
bool isPressEnd(const WireAction& action) {
    return isOfSwitch(action) && action.value == 0;
}
bool isTurn(const WireAction& action) {
    return action.kind == Kind::vpot;
}
bool isSingleClick(const WireAction& action) {
    return action.value == 0x41 || action.value == 0x01;
}

using IsWanted = bool (*)(const WireAction&);

// Of one kind, on all surfaces. Their numbers are strips, 0-15.
class WaitingActs {
public:
    WaitingActs(const char* ofKind, IsWanted wanted, const SurfaceActions& wires, const Closings& ofSurfaces,
                const Pauses& ofThreads, const NameGaps& ofNames)
        : kind(ofKind), isWanted(wanted), surfaces(static_cast<int>(wires.size())), closings(ofSurfaces),
          pauses(ofThreads), gaps(ofNames) {
        for (int surface = 0; surface < surfaces; ++surface)
            for (WireAction action : wires[static_cast<std::size_t>(surface)]) {
                if (!isWanted(action)) continue;
                if (closings.surelyWas(action.at)) complain("while a job has the surfaces", action);
                action.number += 8 * surface;
                rest.insert(std::ranges::upper_bound(rest, action.at, {}, &WireAction::at), action);
            }
    }

    void check(const Acceptance& acceptance, const LogLines& lines) {
        struct Late {
            WireAction asked;
            int owner;
        };
        std::vector<Late> late;
        for (std::size_t i = 0; i < acceptance.accepted.size(); ++i) {
            const auto asked = actionAskedBy(acceptance.accepted[i]);
            if (!asked || asked->number >= 8 * surfaces) continue;
            WireAction onSurface = *asked;
            onSurface.number %= 8;
            if (isWanted(onSurface) && !takeAtOnce(*asked)) late.push_back({*asked, acceptance.numbers[i]});
        }
        for (const auto& [asked, owner] : late) {
            if (!closings.mayMeet(asked.at) && !gaps.mayBeUntold(owner, asked.number, asked.at) &&
                !gaps.mayBeHidden(asked.number, asked.at)) {
                complain("lost", asked);
            } else if (!takeLater(asked) && !isTold(asked.at, lines)) {
                complain("dropped without a word", asked);
            }
        }
    }

    template <typename Explains>
    void checkRest(Explains explains) {
        for (const WireAction& action : rest)
            if (!explains(action)) complain("that nobody asked for", action);
    }

    Violations violations;

private:
    bool takeAtOnce(const WireAction& asked) {
        return take(
            [&](const WireAction& action) { return action.sameAs(asked) && pauses.explain(asked.at, action.at); });
    }

    bool takeLater(const WireAction& asked) {
        return take([&](const WireAction& action) {
            return action.port == asked.port && action.value == asked.value && action.at > asked.at &&
                   action.at <= asked.at + patience + pauses.within(asked.at, action.at);
        });
    }

    template <typename Wanted>
    bool take(Wanted wanted) {
        const auto found = std::ranges::find_if(rest, wanted);
        if (found == rest.end()) return false;
        rest.erase(found);
        return true;
    }

    bool isTold(TimePoint asked, const LogLines& lines) const {
        const TimePoint last = asked + patience + toTell;
        return std::ranges::any_of(lines, [&](const auto& line) {
            return line.first >= asked - runOfDrops && line.first <= last + pauses.within(asked, line.first) &&
                   tellsOfADrop(line.second);
        });
    }

    void complain(const char* what, const WireAction& action) {
        violations.push_back(std::string(kind) + " " + what + ": " + action.text());
    }

    const char* const kind;
    const IsWanted isWanted;
    const int surfaces;
    const Closings& closings;
    const Pauses& pauses;
    const NameGaps& gaps;
    std::vector<WireAction> rest; // of what went out
};

} // namespace

Violations checkPresses(const SurfaceActions& wires, const Acceptance& acceptance, const Closings& closings,
                        const LogLines& lines, const Pauses& pauses, const NameGaps& gaps) {
    WaitingActs presses("press", isPress, wires, closings, pauses, gaps);
    presses.check(acceptance, lines);
    presses.checkRest([](const WireAction&) { return false; });
    return std::move(presses.violations);
}

Violations checkTurns(const SurfaceActions& wires, const Acceptance& acceptance, const Requests& requests,
                      const Closings& closings, const LogLines& lines, const Pauses& pauses, const NameGaps& gaps) {
    WaitingActs turns("turn", isTurn, wires, closings, pauses, gaps);
    turns.check(acceptance, lines);
    turns.checkRest([&](const WireAction& turn) {
        return isSingleClick(turn) && std::ranges::any_of(requests.panSeeks, [&](const PanSeekRequest& request) {
                   if (request.at > turn.at) return false;
                   const bool waited = closings.mayMeet(request.at);
                   const Duration longest = panSeek + (waited ? patience : Duration::zero());
                   return (waited || request.strip == turn.number) &&
                          turn.at - pauses.within(request.at, turn.at) <= request.at + longest;
               });
    });
    return std::move(turns.violations);
}

Violations checkPressesEnd(const std::vector<WireAction>& wire, const Closings& closings, const Pauses& pauses) {
    struct End {
        WireAction action;
        bool isOfJob = false; // it ends all presses of its switch
    };
    Violations violations;
    std::vector<End> ends;
    for (const WireAction& action : wire)
        if (isPressEnd(action)) ends.push_back({action});
    for (const WireAction& begin : wire) {
        if (!isPress(begin)) continue;
        const auto end = std::ranges::find_if(ends, [&](const End& other) {
            const WireAction& action = other.action;
            if (action.number != begin.number || action.port != begin.port || action.at < begin.at) return false;
            return (!other.isOfJob && pauses.mayTake(begin.at, press, action.at)) ||
                   (action.at < begin.at + press && closings.mayBeginAt(action.at));
        });
        if (end == ends.end()) {
            violations.push_back("end of a press lost: " + begin.text());
        } else if (end->action.at < begin.at + press) {
            end->isOfJob = true;
        } else {
            ends.erase(end);
        }
    }
    for (const End& end : ends)
        if (!end.isOfJob) violations.push_back("end of a press that nobody began: " + end.action.text());
    return violations;
}

} // namespace lumbrine::simulation
