#include "tests/simulation/checkers.h"

#include "tests/simulation/actions.h"
#include "tests/simulation/button_checkers.h"
#include "tests/simulation/job_checkers.h"
#include "tests/simulation/presence_checker.h"
#include "tests/simulation/source_checkers.h"
#include "tests/simulation/strangers_checker.h"
#include "tests/simulation/turn_checker.h"
#include "tests/simulation/walk_actions.h"

#include <algorithm>
#include <functional>
#include <set>

namespace lumbrine::simulation {

namespace {

constexpr Duration tick = seconds(0.4);
constexpr Duration press = seconds(0.06);

using Kind = WireAction::Kind;
using Actions = std::vector<WireAction>;

bool isStripEdge(const WireAction& action) {
    return action.kind == Kind::edge && action.number < 8;
}
bool isTouch(const WireAction& action) {
    return isStripEdge(action) && action.port == 0 && action.value == 1;
}
bool isRelease(const WireAction& action) {
    return isStripEdge(action) && action.port == 0 && action.value == 0;
}
bool isPressPort(int port) {
    return port == 1 || port == 2 || port == 3 || port == 7;
}
bool isPress(const WireAction& action) {
    return isStripEdge(action) && isPressPort(action.port) && action.value == 1;
}
bool isPressEnd(const WireAction& action) {
    return isStripEdge(action) && isPressPort(action.port) && action.value == 0;
}

Actions only(const Actions& actions, const std::function<bool(const WireAction&)>& wanted) {
    Actions found;
    std::ranges::copy_if(actions, std::back_inserter(found), wanted);
    return found;
}

void compare(Violations& violations, const std::string& what, const Actions& wire, const Actions& asked) {
    for (std::size_t i = 0; i < std::max(wire.size(), asked.size()); ++i) {
        if (i >= wire.size()) return violations.push_back(what + " lost: " + asked[i].text());
        if (i >= asked.size()) return violations.push_back(what + " that nobody asked for: " + wire[i].text());
        if (!wire[i].sameAs(asked[i]))
            return violations.push_back(what + ": asked " + asked[i].text() + ", sent " + wire[i].text());
        if (wire[i].at != asked[i].at)
            return violations.push_back(what + " late: asked " + asked[i].text() + ", sent " + wire[i].text());
    }
}

} // namespace

Violations checkNothingLostNothingForged(const Actions& wire, const Actions& asked) {
    Violations violations;
    const auto check = [&](const std::string& what, const std::function<bool(const WireAction&)>& wanted) {
        compare(violations, what, only(wire, wanted), only(asked, wanted));
    };
    check("fader move", [](const WireAction& action) { return action.kind == Kind::fader; });
    check("touch", isTouch);
    check("press", isPress);
    return violations;
}

Violations checkPressesEnd(const Actions& wire) {
    Violations violations;
    Actions ends;
    for (WireAction expected : only(wire, isPress)) {
        expected.at += press;
        expected.value = 0;
        ends.push_back(expected);
    }
    compare(violations, "end of a press", only(wire, isPressEnd), ends);
    return violations;
}

namespace {

// The faders that were held by a device when another replaced it, where every tick had to notice.
struct Replaced {
    TimePoint at;
    std::set<int> held;
};

std::vector<Replaced> replacementsOf(const Actions& asked, const Acceptance& acceptance) {
    std::vector<Replaced> replacements;
    const auto& changes = acceptance.changes;
    for (std::size_t c = 0; c < changes.size(); ++c) {
        const TimePoint at = changes[c].at;
        const bool alone = (c == 0 || at - changes[c - 1].at > 2 * tick) &&
                           (c + 1 == changes.size() || changes[c + 1].at - at > 2 * tick);
        if (!changes[c].from || !alone) continue;

        // What the old device still held, unless nothing was heard for so long that its hands were forgotten.
        std::set<int> held;
        const TimePoint since = c == 0 ? distantPast : changes[c - 1].at + 2 * tick;
        TimePoint lastHeard = since;
        for (const ReceivedDatagram& datagram : acceptance.accepted) {
            if (datagram.at >= at) break;
            if (datagram.at - lastHeard > seconds(4.5)) held.clear();
            lastHeard = datagram.at;
            if (datagram.at < since) continue;
            for (const WireAction& action : asked) {
                if (action.at != datagram.at) continue;
                if (isTouch(action)) held.insert(action.number);
                if (isRelease(action)) held.erase(action.number);
            }
        }
        if (at - lastHeard < seconds(4.5) && !held.empty()) replacements.push_back({at, held});
    }
    return replacements;
}

} // namespace

Violations checkReleases(const Actions& wire, const Actions& asked, const Acceptance& acceptance, int surface) {
    Violations violations;
    const std::string where = " on surface " + std::to_string(surface);
    Actions extra = only(wire, isRelease);
    for (const WireAction& release : only(asked, isRelease)) {
        const auto sent = std::ranges::find_if(
            extra, [&](const WireAction& action) { return action.sameAs(release) && action.at == release.at; });
        if (sent == extra.end()) {
            violations.push_back("release lost" + where + ": " + release.text());
        } else {
            extra.erase(sent);
        }
    }
    for (const WireAction& release : extra) {
        const bool afterChange = std::ranges::any_of(acceptance.changes, [&](const OwnerChange& change) {
            return release.at >= change.at && release.at <= change.at + tick;
        });
        if (!afterChange) violations.push_back("release that nobody asked for" + where + ": " + release.text());
    }
    for (const Replaced& replaced : replacementsOf(asked, acceptance)) {
        for (const int strip : replaced.held) {
            const bool released = std::ranges::any_of(wire, [&](const WireAction& action) {
                return isRelease(action) && action.number == strip && action.at >= replaced.at &&
                       action.at <= replaced.at + tick;
            });
            if (!released)
                violations.push_back("fader " + std::to_string(strip) + where + " held for ever after a change at " +
                                     std::to_string(inSeconds(replaced.at.time_since_epoch())) + " s");
        }
    }
    return violations;
}

Violations checkPicture(const Scenario& scenario, const Evidence& evidence) {
    Violations violations;
    const auto expect = [&](bool holds, const std::string& what) {
        if (!holds) violations.push_back("at the end, " + what);
    };
    const remote::SessionPicture& picture = evidence.picture;
    const PublishedState& model = evidence.model;
    expect(evidence.phoneIsConnected, "the phone is not connected");
    // A session without tracks is looked for again at every hello.
    expect(!model.calibrating || evidence.host.shownTracks == 0, "the receiver still scans");
    expect(model.huiConnected, "the receiver does not see the host");
    expect(picture.shownStrips == model.winW, "the client shows another number of strips");
    expect(picture.panRight == model.panRight, "the pan side differs");
    expect(picture.bankOffset.value_or(0xFFFF) == (model.bankOffset < 0 ? 0xFFFF : model.bankOffset),
           "the bank position differs");
    expect(picture.trackCount == model.trackMap.size(), "the number of tracks differs");
    expect(model.winW == 8 * static_cast<int>(evidence.host.surfaces.size()), "the window is not the host's");
    for (std::size_t i = 0; i < static_cast<std::size_t>(model.winW); ++i) {
        const remote::StripPicture& strip = picture.strips[i];
        const std::string where = " of strip " + std::to_string(i);
        expect(strip.name == model.trackNames[i], "the name" + where + " differs");
        expect(strip.fader == FaderValue::ofUnit(model.faders[i]), "the fader" + where + " differs");
        expect((strip.lights.mute == remote::Light::on) == model.mutes[i], "the mute" + where + " differs");
        expect(strip.lights.solo == model.solos[i], "the solo" + where + " differs");
        expect(strip.select == model.selects[i], "the select" + where + " differs");
        if (i / 8 < evidence.host.surfaces.size() && scenario.hostIsReadable())
            expect(model.trackNames[i] == trimmed(evidence.host.surfaces[i / 8].strips[i % 8].display),
                   "the name" + where + " is not the host's");
    }
    return violations;
}

Violations checkAll(const Scenario& scenario, const Evidence& evidence) {
    const Acceptance acceptance = acceptedOf(evidence.datagrams);
    const Requests requests = requestsIn(acceptance);
    Violations violations;
    const auto add = [&](std::string_view checker, const Violations& found) {
        if (!scenario.switches.isOn(checker) || !scenario.hardships.letsJudge(checker)) return;
        for (const std::string& violation : found)
            violations.push_back(std::string(checker) + ": " + violation);
    };

    SurfaceActions wires;
    std::vector<WalkedFader> walked;
    for (std::size_t i = 0; i < evidence.surfaces.size(); ++i) {
        const int surface = static_cast<int>(i);
        SurfaceWire wire = readWire(evidence.surfaces[i]);
        const Actions asked = askedOf(acceptance.accepted, surface);
        const SplitWire split = splitWire(wire.actions, asked, evidence.jobs.runs, surface);
        walked.insert(walked.end(), split.ofWalks.begin(), split.ofWalks.end());
        add("wire", wire.violations);
        add("nothing-lost", checkNothingLostNothingForged(split.ofClient, asked));
        add("turns", checkTurns(split.ofClient, asked, requests, surface));
        add("presses-end", checkPressesEnd(split.ofClient));
        add("releases", checkReleases(split.ofClient, asked, acceptance, surface));
        wires.push_back(std::move(wire.actions));
    }
    add("walked-faders", checkWalkedFaders(walked, requests));
    add("zones", checkZones(wires));
    add("bank-buttons", checkBankButtons(wires, evidence.jobs.runs, requests));
    add("assignment", checkAssignment(wires, requests));
    add("automation", checkAutomation(wires, evidence.jobs, requests, acceptance));
    add("beginnings", checkBeginnings(evidence, requests));
    add("lengths", checkLengths(evidence.jobs, requests));
    add("positions", checkPositions(scenario, evidence));
    add("places", checkPlaces(scenario, evidence, requests, wires, walked));
    add("presence", checkPresence(evidence, acceptance));
    add("sources", checkSources(scenario, evidence));
    add("strangers", checkStrangers(evidence));
    add("untimely-sends", evidence.untimelySends);
    add("recovery", evidence.recovery.violations);
    add("picture", checkPicture(scenario, evidence));
    return violations;
}

} // namespace lumbrine::simulation
