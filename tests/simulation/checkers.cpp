#include "tests/simulation/checkers.h"

#include "tests/simulation/act_checker.h"
#include "tests/simulation/actions.h"
#include "tests/simulation/answer_checkers.h"
#include "tests/simulation/arrival_checker.h"
#include "tests/simulation/bounds_checkers.h"
#include "tests/simulation/button_checkers.h"
#include "tests/simulation/deadline_checkers.h"
#include "tests/simulation/drop_checker.h"
#include "tests/simulation/finger_checker.h"
#include "tests/simulation/hands_checker.h"
#include "tests/simulation/job_checkers.h"
#include "tests/simulation/presence_checker.h"
#include "tests/simulation/press_checkers.h"
#include "tests/simulation/source_checkers.h"
#include "tests/simulation/strangers_checker.h"
#include "tests/simulation/told_checker.h"
#include "tests/simulation/walk_actions.h"
#include "tests/simulation/walk_checker.h"
#include "tests/simulation/wish_checker.h"

#include <algorithm>

namespace lumbrine::simulation {

namespace {

using Actions = std::vector<WireAction>;

// What its display shows. While its AUTO switch has the host show the track's mode, also what it showed before: what is
// known as a mode is no name.
bool isNameOnHost(const Scenario& scenario, const Evidence& evidence, int strip, const std::string& name) {
    const auto slot = static_cast<std::size_t>(strip);
    if (name == trimmed(evidence.host.surfaces[slot / 8].strips[slot % 8].display)) return true;
    TimePoint asked = distantPast;
    for (const WireAction& action : readWire(evidence.surfaces[slot / 8]).actions) {
        if (!action.isOfStrip() || action.number != strip % 8 || action.port != autoPort) continue;
        const bool isOver = action.value == 0 && action.at + scenario.host.latency < evidence.jobs.ended;
        if (action.value == 1) asked = action.at;
        if (isOver) asked = distantPast;
    }
    std::string before;
    for (const ShownTrack& display : evidence.record.shown)
        if (display.strip == strip && display.at < asked) before = display.text;
    return asked > distantPast && name == trimmed(before);
}

} // namespace

Violations checkPicture(const Scenario& scenario, const Evidence& evidence) {
    Violations violations;
    const auto expect = [&](bool holds, const std::string& what) {
        if (!holds) violations.push_back("at the end, " + what);
    };
    const remote::SessionPicture& picture = evidence.picture;
    const PublishedState& model = evidence.model;
    expect(evidence.phoneIsConnected, "the phone is not connected");
    // A session without tracks is looked for again at every hello.
    expect(!model.calibrating() || evidence.host.shownTracks == 0, "the receiver still scans");
    expect(model.huiConnected, "the receiver does not see the host");
    expect(picture.shownStrips == model.winW, "the client shows another number of strips");
    expect(picture.panRight == model.panRight, "the pan side differs");
    expect(picture.bankOffset.value_or(0xFFFF) == (model.bankOffset < 0 ? 0xFFFF : model.bankOffset),
           "the bank position differs");
    expect(picture.trackCount == model.session.size(), "the number of tracks differs");
    expect(model.winW == 8 * static_cast<int>(evidence.host.surfaces.size()), "the window is not the host's");
    for (std::size_t i = 0; i < static_cast<std::size_t>(model.winW); ++i) {
        const remote::StripPicture& strip = picture.strips[i];
        const std::string where = " of strip " + std::to_string(i);
        expect(strip.name == model.strips[i].name, "the name" + where + " differs");
        expect(strip.fader == FaderValue::ofUnit(model.strips[i].fader), "the fader" + where + " differs");
        expect((strip.lights.mute == remote::Light::on) == model.strips[i].mute.rawOn, "the mute" + where + " differs");
        expect(strip.lights.solo == model.strips[i].solo, "the solo" + where + " differs");
        expect(strip.select == model.strips[i].select, "the select" + where + " differs");
        if (i / 8 < evidence.host.surfaces.size())
            expect(isNameOnHost(scenario, evidence, static_cast<int>(i), model.strips[i].name),
                   "the name" + where + " is not the host's");
    }
    return violations;
}

namespace {

// With the program's end, and without the faders that walks play.
HandsEvidence handsOf(const Evidence& evidence) {
    HandsEvidence hands;
    std::vector<ReceivedDatagram> received = evidence.datagrams;
    received.insert(received.end(), evidence.ending.datagrams.begin(), evidence.ending.datagrams.end());
    hands.acceptance = acceptedOf(received);
    hands.runs = evidence.jobs.runs;
    hands.runs.insert(hands.runs.end(), evidence.ending.runs.begin(), evidence.ending.runs.end());
    hands.pauses = Pauses(evidence.pauses);
    hands.gaps = NameGaps(evidence.sent, evidence.record, hands.acceptance, hands.pauses);
    hands.programEnd = evidence.ending.ended;
    hands.end = evidence.ending.ended + seconds(0.2);
    for (std::size_t i = 0; i < evidence.surfaces.size(); ++i) {
        const int surface = static_cast<int>(i);
        Actions wire = readWire(evidence.surfaces[i]).actions;
        std::ranges::copy(readWire(evidence.ending.surfaces[i]).actions, std::back_inserter(wire));
        const Actions asked = askedOf(hands.acceptance.accepted, surface);
        hands.wires.push_back(splitWire(wire, asked, hands.runs, surface, hands.pauses).ofClient);
    }
    return hands;
}

// Where a host that does what a host does would have shown what was asked for.
std::vector<Stretch> disturbancesIn(const Scenario& scenario, const Evidence& evidence) {
    if (scenario.host.restlessUserEvery > Duration::zero()) return {{evidence.begun, evidence.jobs.ended}};
    return evidence.disturbances;
}

void addNamed(Violations& violations, std::string_view checker, const Violations& found) {
    for (const std::string& violation : found)
        violations.push_back(std::string(checker) + ": " + violation);
}

// What is judged by the tracks that the host had.
void addByTracks(Violations& violations, const Scenario& scenario, const Evidence& evidence,
                 const Acceptance& acceptance, const Requests& requests, const SurfaceActions& wires) {
    const ShownTracks shown(evidence.sent, evidence.record, evidence.jobs.runs, evidence.datagrams);
    if (scenario.switches.isOn("tracks-of-acts") || scenario.switches.isOn("acts-of-newcomers")) {
        const ActViolations acts = checkActs(evidence, shown, acceptance, requests);
        if (scenario.switches.isOn("tracks-of-acts")) addNamed(violations, "tracks-of-acts", acts.wrongTracks);
        if (scenario.switches.isOn("acts-of-newcomers")) addNamed(violations, "acts-of-newcomers", acts.ofNewcomers);
    }
    const auto add = [&](std::string_view checker, const auto& check) {
        if (scenario.switches.isOn(checker)) addNamed(violations, checker, check());
    };
    add("tellings", [&] { return checkTellings(scenario, evidence, shown); });
    add("quiet-moments", [&] { return checkQuietMoments(scenario, evidence, acceptance); });
    add("members", [&] { return checkMembers(evidence, shown, acceptance, requests); });
    add("returns", [&] { return checkReturns(evidence, requests); });
    add("taps", [&] { return checkTaps(scenario, evidence, acceptance, requests); });
    add("told-drops", [&] { return checkDropsAreTold(scenario, evidence, shown, acceptance, requests); });
    add("tracks-of-wishes", [&] { return checkTracksOfWishes(evidence, shown, acceptance, requests); });
    add("toggles", [&] { return checkToggles(evidence, shown, acceptance, requests); });
    add("scan-repeats", [&] { return checkScanRepeats(evidence, requests); });
    for (const LostSeek& lost : checkArrivals(scenario, evidence, shown, acceptance, requests, wires))
        add(lost.checker, [&lost] { return Violations{lost.text}; });
}

} // namespace

Violations checkAll(const Scenario& scenario, const Evidence& evidence) {
    const Acceptance acceptance = acceptedOf(evidence.datagrams);
    const Requests requests = requestsIn(acceptance);
    Violations violations;
    const auto add = [&](std::string_view checker, const Violations& found) {
        if (scenario.switches.isOn(checker)) addNamed(violations, checker, found);
    };

    const Pauses pauses(evidence.pauses);
    const Closings closings(evidence.jobs.runs, pauses);
    const NameGaps gaps(evidence.sent, evidence.record, acceptance, pauses);
    SurfaceActions wires;
    SurfaceActions ofClient; // without what walks play
    std::vector<WalkedFader> walked;
    for (std::size_t i = 0; i < evidence.surfaces.size(); ++i) {
        const int surface = static_cast<int>(i);
        SurfaceWire wire = readWire(evidence.surfaces[i]);
        const Actions asked = askedOf(acceptance.accepted, surface);
        SplitWire split = splitWire(wire.actions, asked, evidence.jobs.runs, surface, pauses);
        walked.insert(walked.end(), split.ofWalks.begin(), split.ofWalks.end());
        add("wire", wire.violations);
        add("nothing-lost", checkFingers(split.ofClient, surface, acceptance, closings, pauses, gaps));
        add("presses-end", checkPressesEnd(split.ofClient, closings, pauses));
        wires.push_back(std::move(wire.actions));
        ofClient.push_back(std::move(split.ofClient));
    }
    add("nothing-lost", checkPresses(ofClient, acceptance, closings, evidence.jobs.lines, pauses, gaps));
    add("turns", checkTurns(ofClient, acceptance, requests, closings, evidence.jobs.lines, pauses, gaps));
    add("walked-faders", checkWalkedFaders(walked, requests));
    add("zones", checkZones(wires));
    add("bank-buttons", checkBankButtons(wires, evidence.jobs.runs, requests, pauses));
    add("assignment", checkAssignment(wires, requests, pauses));
    add("automation", checkAutomation(ofClient, evidence.jobs, requests, acceptance, pauses));
    const bool isTrimAWord = scenario.host.trimWords == TrimWords::alone;
    add(isTrimAWord ? "modes-beside-trim" : "modes-in-time",
        checkModesInTime(wires, evidence.jobs, requests, acceptance, disturbancesIn(scenario, evidence), pauses, gaps));
    add("walks-in-time", checkWalksInTime(wires, walked, evidence.jobs, requests, acceptance, pauses));
    add("wishes-in-time", checkSettersInTime(evidence.setters, requests, acceptance, pauses));
    const HandsViolations hands = checkHands(handsOf(evidence));
    add("hands", hands.ofClients);
    add("hands-on-auto", hands.ofAuto);
    add("answers", checkAnswers(evidence.sent, acceptance, pauses));
    add("bounds", checkBounds(evidence.load));
    add("repeats", checkRepeats(evidence.lines));
    add("beginnings", checkBeginnings(evidence, wires, acceptance, requests, pauses));
    add("hands-rest", checkHandsRest(evidence.jobs.runs, ofClient, acceptance, pauses));
    add("lengths", checkLengths(evidence.jobs, requests, pauses));
    add("positions", checkPositions(evidence));
    add("places", checkPlaces(scenario, evidence, requests, walked));
    addByTracks(violations, scenario, evidence, acceptance, requests, wires);
    add("presence", checkPresence(evidence, acceptance, pauses));
    add("sources", checkSources(scenario, evidence));
    add("strangers", checkStrangers(evidence));
    add("untimely-sends", evidence.untimelySends);
    add("recovery", evidence.recovery.violations);
    add("picture", checkPicture(scenario, evidence));
    return violations;
}

} // namespace lumbrine::simulation
