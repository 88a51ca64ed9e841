#include "model/bank/calibration.h"

#include "model/bank/scan_ending.h"

#include <algorithm>
#include <cassert>
#include <iterator>
#include <utility>

namespace lumbrine {

namespace {

constexpr Duration settledNames = seconds(1.2);
constexpr Duration settleLimit = seconds(6.0);
constexpr Duration betweenKeys = seconds(0.075);

} // namespace

Calibration::Calibration(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Parts parts, bool debug)
    : jobs(jobs), state(state), log(log), parts(parts), debug(debug) {}

// ---- Beginning

void Calibration::calibrateBanks(bool force, std::optional<Asked> asked) {
    assert(jobs.runtime.onMain());
    if (state.published.calibrating() || (!asked && !state.quiet()) || !admitted(force)) return;
    DeskJob job{
        .kind = DeskJob::Kind::scan,
        .name = command_name::scan,
        .begin =
            [this, force] {
                if (!admitted(force)) return false;
                parts.metadata.refreshFullNames(); // what the scan sees is laid over the list
                log.say("▶ Scanning all tracks… (PT's display will move briefly)",
                        "▶ トラック全体を計測中…（PT の表示が一瞬動きます）");
                return true;
            },
        .work = [this] { scan(); },
        .end = [this] { finish(); },
    };
    if (asked) {
        job.owner = asked->owner;
        job.until = asked->at + patience;
    }
    parts.queue.request(std::move(job));
}

bool Calibration::admitted(bool force) {
    if (!state.published.huiConnected) {
        if (force) log.sayOnceAMinute("Scan: aborted (Pro Tools not connected)", "計測: Pro Tools 未接続のため中止");
        return false;
    }
    if (!force && (!state.published.session.empty() || state.handsOn(jobs.runtime.now()))) return false;
    if (state.transportRunning()) {
        if (!std::exchange(state.scans.warnedTransportSkip, true))
            log.sayOnceAMinute("Scan: postponed while playing/recording (runs automatically after stop)",
                               "計測: 再生/録音中のため見送り（停止後に自動で行います）");
        return false;
    }
    state.scans.warnedTransportSkip = false;
    return force || jobs.runtime.now() - state.presence.firstPingAt > pingRunBeforeScan;
}

bool Calibration::hasLaidOver(const std::vector<TrackIdentity>& list) const {
    return std::ranges::equal(listed, list, {}, {}, &TrackIdentity::name);
}

void Calibration::scanAnother() {
    if (!state.published.huiConnected || state.transportRunning()) return;
    if (!state.quiet() || state.handsOn(jobs.runtime.now())) return;
    forgetMap();
    forgotten = {}; // the same names may be other tracks
    parts.metadata.forgetComments();
    calibrateBanks(true);
}

void Calibration::forgetMap() {
    assert(jobs.runtime.onMain());
    if (state.published.session.empty()) return;
    forgotten = std::exchange(state.published.session, {});
    state.published.changed();
}

// ---- Scanning

void Calibration::scan() {
    // Just after a connection Pro Tools is still filling the displays.
    parts.moves.waitForStillNames(settledNames, settleLimit);
    const SurveyedBank start = parts.moves.stableLook();
    readList();
    const bool topIsSure = rewind();
    if (listed.empty()) readList(); // it may have taken its time
    Session scanned = walk(topIsSure);
    const bool isSure = scanned.sure;
    const int startOffset = isSure ? locate(scanned.tracks, start.names) : -1;
    // At the end of the program every look is cut short, and the first one may have seen no strip.
    const std::size_t banks = scanned.size() / std::max<std::size_t>(start.width(), 1) + 1;
    jobs.runtime.syncMain([this, &scanned] { commit(std::move(scanned)); });
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
        surfacesChanged = before.width() != width;
        if (surfacesChanged) break;
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
    const bool mayBeStuck = survey.seen().size() == 1 && listed.size() > width && !hiddenAreListed;
    if (!survey.isWholeByList() && (!topIsSure || wasDisturbed || survey.looksDisturbed() || mayBeStuck))
        session.sure = false;
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

// ---- Ending

void Calibration::commit(Session scanned) {
    assert(jobs.runtime.onMain());
    forgetMap();
    carryOver(forgotten, scanned);
    // Where no key led anywhere, but did before, Pro Tools may have been stuck.
    const auto width = static_cast<std::size_t>(state.published.winW);
    if (scanned.size() == width && forgotten.size() > width) scanned.sure = false;
    state.scans.repeated = !surfacesChanged && !forgotten.empty() && sameDisplays(forgotten, scanned);
    state.scans.sawNothing = scanned.empty();
    const bool otherTracks = !forgotten.empty() && !sameDisplays(forgotten, scanned);
    if (forgotten.empty() || otherTracks) ++state.mapNumber;
    forgotten = {};
    const std::string tracks = std::to_string(scanned.size());
    state.published.session = std::move(scanned);
    state.fullTableDirty = true;
    if (otherTracks) {
        state.published.bankOffset = -1; // until the surfaces are back where the user was
        parts.mirror.send(occasion::bankView);
    }
    log.say("✓ Mapped all " + tracks + " tracks", "✓ 全 " + tracks + " トラックを把握しました");
}

void Calibration::finish() {
    assert(jobs.runtime.onMain());
    state.published.changed();
    parts.bankMap.relocalize();
    parts.mirror.sendBankPosToClient();
    parts.capture.allShown();
    parts.metadata.refreshFullNames();
    if (state.published.bankOffset < 0 && !state.scans.sawNothing) {
        retryOrGiveUp();
    } else {
        state.scans.calibrationRetried = false;
    }
}

void Calibration::retryOrGiveUp() {
    if (std::exchange(state.scans.calibrationRetried, true)) {
        log.sayOnceAMinute("Cannot determine bank position (map does not match the display)",
                           "位置を特定できません（地図と表示が合いません）");
        return;
    }
    log.sayOnceAMinute("Cannot determine bank position, rescanning…", "位置を特定できないため測り直します…");
    jobs.onMainAfter(retryDelay, [this] { scanAnew(); });
}

void Calibration::scanAnew() {
    // A job that has taken the surfaces meanwhile goes by the map that is there.
    if (!state.quiet()) return;
    if (state.handsOn(jobs.runtime.now())) return jobs.onMainAfter(retryDelay, [this] { scanAnew(); });
    forgetMap();
    calibrateBanks(true);
}

} // namespace lumbrine
