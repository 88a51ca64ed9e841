#include "model/bank/calibration.h"

#include "base/blank_text.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace lumbrine {

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
    const bool isNeeded = state.published.session.empty() && mayFindTracks();
    if (!force && (!isNeeded || state.handsOn(jobs.runtime.now()))) return false;
    if (state.transportRunning()) {
        if (!std::exchange(state.scans.warnedTransportSkip, true))
            log.sayOnceAMinute("Scan: postponed while playing/recording (runs automatically after stop)",
                               "計測: 再生/録音中のため見送り（停止後に自動で行います）");
        return false;
    }
    state.scans.warnedTransportSkip = false;
    return force || jobs.runtime.now() - state.presence.firstPingAt > pingRunBeforeScan;
}

bool Calibration::mayFindTracks() const {
    const std::vector<TrackIdentity>& known = parts.metadata.banked();
    return !state.scans.sawNothing || !std::ranges::all_of(parts.bankMap.window(), isBlank) ||
           (!known.empty() && !hasLaidOver(known));
}

bool Calibration::hasLaidOver(const std::vector<TrackIdentity>& list) const {
    return std::ranges::equal(listed, list, {}, {}, &TrackIdentity::name);
}

void Calibration::scanAnother() {
    if (!state.published.huiConnected || state.transportRunning()) return;
    if (!state.quiet() || state.handsOn(jobs.runtime.now())) return;
    forgetMap();
    forgetSession();
    calibrateBanks(true);
}

void Calibration::displaysEmptied() {
    state.scans.emptiedAt = jobs.runtime.now();
    if (mayShowNoNames(state.published.session)) return;
    forgetMap();
    forgetSession();
    if (state.quiet()) state.bankMoves += 2; // the strips may show other tracks of the same names next
    state.scans.sawNothing = true;           // until there are names
    state.published.bankOffset = -1;
    parts.mirror.send(occasion::bankView);
}

// Names come strip by strip, so for a moment the displays may also be empty on the way from the session's last tracks,
// which may be fewer than the strips, to as many tracks without names.
bool Calibration::mayShowNoNames(const Session& session) const {
    const std::vector<Track>& tracks = session.tracks;
    if (tracks.empty()) return true;
    const auto width = static_cast<std::size_t>(state.published.winW);
    const std::size_t last = (tracks.size() - 1) % width + 1;
    const auto isNameless = [](const Track& track) { return isBlank(track.display); };
    return !std::ranges::search_n(tracks, static_cast<std::ptrdiff_t>(last), true, {}, isNameless).empty();
}

// The same names may be other tracks.
void Calibration::forgetSession() {
    forgotten = {};
    parts.metadata.forgetComments();
}

void Calibration::forgetMap() {
    assert(jobs.runtime.onMain());
    if (state.published.session.empty()) return;
    forgotten = std::exchange(state.published.session, {});
    state.published.changed();
}

// ---- Ending

bool Calibration::commit(Session scanned) {
    assert(jobs.runtime.onMain());
    forgetMap();
    if (wasClosed) forgetSession();
    carryOver(forgotten, scanned);
    // Where no key led anywhere, but did before, Pro Tools may have been stuck.
    const auto width = static_cast<std::size_t>(state.published.winW);
    if (scanned.size() == width && forgotten.size() > width) scanned.sure = false;
    if (isContradicted && !sameDisplays(forgotten, scanned)) scanned.sure = false; // until another scan agrees
    state.scans.repeated = !wasInterrupted && !forgotten.empty() && sameDisplays(forgotten, scanned);
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
    return state.published.session.sure;
}

void Calibration::finish() {
    assert(jobs.runtime.onMain());
    state.published.changed();
    state.scans.endedOn = parts.bankMap.window();
    parts.bankMap.relocalize();
    parts.mirror.sendBankPosToClient();
    parts.mirror.sendShownTrackNames(); // a strip may show another track of the name that passed by last
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
