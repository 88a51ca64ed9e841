#include "tests/simulation/turn_checker.h"

#include <algorithm>

namespace lumbrine::simulation {

namespace {

constexpr Duration panSeek = 41 * seconds(0.035);

bool isTurn(const WireAction& action) {
    return action.kind == WireAction::Kind::vpot;
}

bool isSingleClick(const WireAction& action) {
    return action.value == 0x41 || action.value == 0x01;
}

} // namespace

std::vector<std::string> checkTurns(const std::vector<WireAction>& wire, const std::vector<WireAction>& asked,
                                    const Requests& requests, int surface, const Pauses& pauses) {
    std::vector<std::string> violations;
    std::vector<WireAction> others;
    std::ranges::copy_if(wire, std::back_inserter(others), isTurn);
    for (const WireAction& turn : asked) {
        if (!isTurn(turn)) continue;
        const auto sent = std::ranges::find_if(others, [&](const WireAction& action) {
            return action.sameAs(turn) && pauses.explain(turn.at, action.at);
        });
        if (sent == others.end()) {
            violations.push_back("turn lost: " + turn.text());
        } else {
            others.erase(sent);
        }
    }
    for (const WireAction& turn : others) {
        const bool onItsWay = std::ranges::any_of(requests.panSeeks, [&](const PanSeekRequest& request) {
            return request.strip == turn.number + 8 * surface && request.at <= turn.at &&
                   turn.at - pauses.within(request.at, turn.at) <= request.at + panSeek;
        });
        if (!onItsWay || !isSingleClick(turn)) violations.push_back("turn that nobody asked for: " + turn.text());
    }
    return violations;
}

} // namespace lumbrine::simulation
