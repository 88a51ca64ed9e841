// The part of the checkers that is about faders let go, as long as checkHands is off.
#include "tests/simulation/checkers.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace lumbrine::simulation {

namespace {

constexpr Duration oneTick = seconds(0.4);
constexpr Duration silence = seconds(4.5);

bool isTouchEdge(const WireAction& action) {
    return action.kind == WireAction::Kind::edge && action.number < 8 && action.port == 0 && action.value == 1;
}
bool isReleaseEdge(const WireAction& action) {
    return action.kind == WireAction::Kind::edge && action.number < 8 && action.port == 0 && action.value == 0;
}

// The faders that were held by a device when another replaced it, where every tick had to notice.
struct Replaced {
    TimePoint at;
    std::set<int> held;
};

std::vector<Replaced> replacementsOf(const std::vector<WireAction>& asked, const Acceptance& acceptance) {
    std::vector<Replaced> replacements;
    const auto& changes = acceptance.changes;
    for (std::size_t c = 0; c < changes.size(); ++c) {
        const TimePoint at = changes[c].at;
        const bool alone = (c == 0 || at - changes[c - 1].at > 2 * oneTick) &&
                           (c + 1 == changes.size() || changes[c + 1].at - at > 2 * oneTick);
        if (!changes[c].from || !alone) continue;

        // What the old device still held, unless nothing was heard for so long that its hands were forgotten.
        std::set<int> held;
        const TimePoint since = c == 0 ? distantPast : changes[c - 1].at + 2 * oneTick;
        TimePoint lastHeard = since;
        for (const ReceivedDatagram& datagram : acceptance.accepted) {
            if (datagram.at >= at) break;
            if (datagram.at - lastHeard > silence) held.clear();
            lastHeard = datagram.at;
            if (datagram.at < since) continue;
            for (const WireAction& action : asked) {
                if (action.at != datagram.at) continue;
                if (isTouchEdge(action)) held.insert(action.number);
                if (isReleaseEdge(action)) held.erase(action.number);
            }
        }
        if (at - lastHeard < silence && !held.empty()) replacements.push_back({at, held});
    }
    return replacements;
}

} // namespace

Violations checkReleases(const std::vector<WireAction>& wire, const std::vector<WireAction>& asked,
                         const Acceptance& acceptance, int surface, const Pauses& pauses) {
    Violations violations;
    const std::string where = " on surface " + std::to_string(surface);
    std::vector<WireAction> extra;
    std::ranges::copy_if(wire, std::back_inserter(extra), isReleaseEdge);
    for (const WireAction& release : asked) {
        if (!isReleaseEdge(release)) continue;
        const auto sent = std::ranges::find_if(extra, [&](const WireAction& action) {
            return action.sameAs(release) && pauses.explain(release.at, action.at);
        });
        if (sent == extra.end()) {
            violations.push_back("release lost" + where + ": " + release.text());
        } else {
            extra.erase(sent);
        }
    }
    for (const WireAction& release : extra) {
        const bool afterChange = std::ranges::any_of(acceptance.changes, [&](const OwnerChange& change) {
            return release.at >= change.at && release.at <= change.at + oneTick + pauses.within(change.at, release.at);
        });
        // A machine that slept has not heard of its clients for as long.
        const bool afterSilence = release.at - pauses.earliest(release.at) > silence;
        if (!afterChange && !afterSilence)
            violations.push_back("release that nobody asked for" + where + ": " + release.text());
    }
    for (const Replaced& replaced : replacementsOf(asked, acceptance)) {
        for (const int strip : replaced.held) {
            const bool released = std::ranges::any_of(wire, [&](const WireAction& action) {
                return isReleaseEdge(action) && action.number == strip && action.at >= replaced.at &&
                       action.at <= replaced.at + oneTick + pauses.within(replaced.at, action.at);
            });
            if (!released)
                violations.push_back("fader " + std::to_string(strip) + where + " held for ever after a change at " +
                                     std::to_string(inSeconds(replaced.at.time_since_epoch())) + " s");
        }
    }
    return violations;
}

} // namespace lumbrine::simulation
