// The part of calibration.h that moves the surfaces, on the desk's thread.
#include "model/bank/calibration.h"
#include "model/bank/scan_ending.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace lumbrine {

namespace {

constexpr Duration settledNames = seconds(1.2);
constexpr Duration settleLimit = seconds(6.0);
constexpr Duration betweenKeys = seconds(0.075);

} // namespace

void Calibration::scan() {
    began = jobs.runtime.now();
    wasInterrupted = false;
    // Just after a connection Pro Tools is still filling the displays.
    parts.moves.waitForStillNames(settledNames, settleLimit);
    const SurveyedBank start = parts.moves.stableLook();
    readList();
    const bool topIsSure = rewind();
    if (listed.empty()) readList(); // it may have taken its time
    Session scanned = walk(topIsSure);
    const int startOffset = locate(scanned.tracks, start.names);
    // At the end of the program every look is cut short, and the first one may have seen no strip.
    const std::size_t banks = scanned.size() / std::max<std::size_t>(start.width(), 1) + 1;
    const bool isSure = jobs.runtime.syncMain([this, &scanned] { return commit(std::move(scanned)); });
    if (isSure) return parts.moves.moveWindow(std::max(startOffset, 0));
    returnTo(start, banks);
}

bool Calibration::goesOn(int presses, TimePoint since) const {
    return presses < maxTracks / std::max(parts.moves.layout().width, 1) + sparePresses &&
           jobs.runtime.now() - since < longestWay;
}

// Bank by bank, as far as the top, where no map tells the way.
void Calibration::returnTo(const SurveyedBank& start, std::size_t banks) {
    for (; banks > 0 && !looksLike(parts.moves.stableLook(), start); --banks) {
        parts.moves.press(bank_port::bankBack);
        parts.moves.shortQuietWait();
    }
    parts.moves.awaitLastPress(-1);
}

// True when the surfaces certainly show the first track then.
bool Calibration::rewind() {
    std::vector<Track> tracks(listed.size());
    for (std::size_t i = 0; i < listed.size(); ++i) {
        tracks[i].displayKnown = false;
        tracks[i].name = listed[i];
    }
    const TimePoint begin = jobs.runtime.now();
    int vain = 0; // presses in a row
    for (int banks = 0; goesOn(banks, begin); ++banks) {
        const SurveyedBank before = parts.moves.stableLook();
        const int byList = locate(tracks, before.names);
        parts.moves.press(bank_port::bankBack);
        if (byList < 0) { // a bank key may lead to what looks the same, a channel key hardly
            jobs.runtime.sleepFor(betweenKeys);
            parts.moves.press(bank_port::channelBack);
        }
        const bool hasMoved = !looksLike(parts.moves.lookAfterPress(before), before);
        vain = hasMoved ? 0 : vain + 1;
        // A press may get lost.
        const int enough = byList > 0 ? 3 : byList == 0 || listed.empty() ? 1 : 2;
        if (hasMoved || vain < enough) continue;
        if (byList == 0 || !before.isUniform()) return byList <= 0 || hiddenAreListed;
        if ((static_cast<std::size_t>(banks) + 1) * before.width() >= listed.size()) return false;
    }
    return false;
}

// Presses go nowhere while Pro Tools is silent, and lead through another session once one was closed, which empties
// the displays.
bool Calibration::lostItsWay(const Session& scanned) {
    return jobs.runtime.syncMain([&] {
        if (!state.published.huiConnected || state.presence.firstPingAt > began) wasInterrupted = true;
        wasClosed = state.scans.emptiedAt > began && !mayShowNoNames(scanned);
        return wasInterrupted || wasClosed;
    });
}

Session Calibration::walk(bool topIsSure) {
    SurveyedBank top = parts.moves.stableLook();
    const std::size_t width = top.width();
    TrackSurvey survey(width, listed);
    survey.add(std::move(top));
    const TimePoint begin = jobs.runtime.now();
    auto key = KeyThatShowedNothing::isUnclear;
    bool wasDisturbed = false;
    bool wasRepeated = false;
    for (int presses = 0; goesOn(presses, begin); ++presses) {
        const SurveyedBank before = parts.moves.stableLook();
        wasInterrupted = before.width() != width;
        if (wasInterrupted) break;
        if (!looksLike(before, survey.seen().back())) wasDisturbed = true; // somebody else moves the banks
        parts.moves.press(bank_port::bankForward);
        SurveyedBank shown = parts.moves.lookAfterPress(before);
        if (looksLike(shown, before) && !survey.expectsAnother()) {
            key = meaningOfLastKey(survey);
            if (key == KeyThatShowedNothing::wasLost) continue;
            const bool listHasMore = listed.size() > survey.seen().size() * width;
            if (key != KeyThatShowedNothing::moved && listHasMore && !std::exchange(wasRepeated, true)) continue;
            if (key != KeyThatShowedNothing::moved) break;
        }
        survey.add(std::move(shown));
        wasRepeated = false;
    }
    if (key != KeyThatShowedNothing::metTheEnd) survey.endsAfter(0);
    Session session = survey.session();
    const bool mayBeWrong = lostItsWay(session);
    const bool mayBeStuck = survey.seen().size() == 1 && listed.size() > width && !hiddenAreListed;
    if (!survey.isWholeByList() && (!topIsSure || mayBeWrong || wasDisturbed || survey.looksDisturbed() || mayBeStuck))
        session.sure = false;
    isContradicted = !listed.empty() && !hiddenAreListed && !survey.isWholeByList();
    if (debug) printLearned(survey, session);
    return session;
}

void Calibration::printLearned(const TrackSurvey& survey, const Session& session) const {
    const std::vector<SurveyedBank>& banks = survey.seen();
    const std::size_t seen = banks.size() * banks.back().width();
    const bool isFilled = session.size() < seen && !banks.back().endsWithoutTrack();
    log.print(
        "[DIAG] scan: " + std::to_string(banks.size()) + " banks, the last one " +
        (isFilled ? "filled with " + std::to_string(seen - session.size()) + " tracks of the one before" : "whole") +
        (session.sure ? "" : ", not sure") + "; " + parts.moves.habits());
}

Calibration::KeyThatShowedNothing Calibration::meaningOfLastKey(TrackSurvey& survey) {
    const bool isEvident = survey.isWholeByList() || ScanEnding::evidentLastStep(survey.seen()) > 0;
    return isEvident ? KeyThatShowedNothing::metTheEnd : lookBack(survey);
}

// By channels back as far as is needed, and then as far on, and one more: at the session's end it changes nothing.
Calibration::KeyThatShowedNothing Calibration::lookBack(TrackSurvey& survey) {
    using enum KeyThatShowedNothing;
    const SurveyedBank last = survey.seen().back();
    ScanEnding ending(survey.seen());
    SurveyedBank shown = last;
    std::size_t back = 0;
    do {
        shown = stepBack(shown, survey.seen().size() == 1 || last.isUniform());
        ending.sawBefore(++back, shown);
    } while (ending.isOpen() && back < last.width());
    if (ending.isImpossible()) return isUnclear;
    const std::size_t on = std::min(back, ending.lastOffset());
    parts.moves.pressChannels(bank_port::channelForward, on + (ending.hasMoved() ? 0 : 1));
    SurveyedBank there = parts.moves.lookAfterPress(shown);
    const bool isBack = looksLike(there, last);
    if (ending.hasMoved()) return isBack ? moved : isUnclear;
    if (ending.lastStep() == 0) return isUnclear;
    if (isBack) {
        survey.endsAfter(ending.lastStep());
        return metTheEnd;
    }
    parts.moves.press(bank_port::channelBack);
    return looksLike(parts.moves.lookAfterPress(there), last) ? wasLost : isUnclear;
}

// A channel back. A press that should have shown something may have been lost, and is repeated.
SurveyedBank Calibration::stepBack(const SurveyedBank& shown, bool mayShowNothing) {
    parts.moves.press(bank_port::channelBack);
    SurveyedBank next = parts.moves.lookAfterPress(shown);
    if (mayShowNothing || !looksLike(next, shown)) return next;
    parts.moves.press(bank_port::channelBack);
    return parts.moves.lookAfterPress(shown);
}

void Calibration::readList() {
    listed = jobs.runtime.syncMain([this] {
        hiddenAreListed = !parts.metadata.bankedAreVisible();
        std::vector<std::string> names;
        std::ranges::transform(parts.metadata.banked(), std::back_inserter(names), &TrackIdentity::name);
        return names;
    });
}

} // namespace lumbrine
