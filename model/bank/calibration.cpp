#include "model/bank/calibration.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace lumbrine {

namespace {

constexpr Duration settledNames = seconds(1.2);
constexpr Duration settleLimit = seconds(6.0);

std::vector<std::optional<double>> fadersOfSession(const std::map<std::size_t, std::vector<double>>& record,
                                                   std::size_t tracks) {
    // Where banks overlap the later one counts.
    std::vector<std::optional<double>> faders(tracks);
    for (const auto& [offset, shown] : record)
        for (std::size_t strip = 0; strip < shown.size() && offset + strip < tracks; ++strip)
            faders[offset + strip] = shown[strip];
    return faders;
}

} // namespace

Calibration::Calibration(const Jobs& modelJobs, ReceiverState& receiverState, Parts otherParts, Bilingual bilingual)
    : jobs(modelJobs), state(receiverState), parts(otherParts), text(bilingual) {}

void Calibration::calibrateBanks(bool force) {
    assert(jobs.runtime.onMain());
    if (!admitted(force)) return;
    state.published.calibrating = true; // which the line announces too
    parts.log.appendLog(text("▶ Scanning all tracks… (PT's display will move briefly)",
                             "▶ トラック全体を計測中…（PT の表示が一瞬動きます）"));
    jobs.inBackground(Priority::userInitiated, [this] { scan(); });
}

bool Calibration::admitted(bool force) {
    if (!state.published.huiConnected) {
        if (force)
            parts.log.appendLog(text("Scan: aborted (Pro Tools not connected)", "計測: Pro Tools 未接続のため中止"));
        return false;
    }
    if (!state.quiet()) return false;
    if (!force && !state.published.trackMap.empty()) return false;
    if (state.transportRunning()) {
        if (!std::exchange(state.bank.warnedTransportSkip, true))
            parts.log.appendLog(text("Scan: postponed while playing/recording (runs automatically after stop)",
                                     "計測: 再生/録音中のため見送り（停止後に自動で行います）"));
        return false;
    }
    state.bank.warnedTransportSkip = false;
    return force || jobs.runtime.now() - state.presence.firstPingAt > pingRunBeforeScan;
}

void Calibration::scan() {
    parts.moves.waitForStillNames(settledNames, settleLimit);
    const TrackNames start = parts.moves.stableWindow();
    rewind();
    Scanned scanned = walk();
    const int startOffset = locate(scanned.map, start);
    jobs.runtime.syncMain([this, &scanned] { commit(std::move(scanned)); });
    parts.moves.moveWindow(std::max(startOffset, 0));
    jobs.runOnMain([this] { finish(); });
}

void Calibration::rewind() {
    for (int banks = 0; banks < maxBanks; ++banks) {
        const TrackNames before = parts.moves.stableWindow();
        parts.moves.press(bank_port::bankBack);
        parts.moves.shortQuietWait();
        if (parts.moves.stableWindow() == before) return;
    }
}

Calibration::Scanned Calibration::walk() {
    const auto width = static_cast<std::size_t>(parts.moves.layout().width);
    Scanned scanned;
    scanned.map = trimTrailingEmpty(parts.moves.stableWindow());
    scanned.faders[0] = shownFaders(width);
    for (int banks = 0; banks < maxBanks; ++banks) {
        const TrackNames before = parts.moves.stableWindow();
        parts.moves.press(bank_port::bankForward);
        parts.moves.shortQuietWait();
        const TrackNames after = parts.moves.stableWindow();
        if (after == before) break; // the end of the session
        const TrackNames shown = trimTrailingEmpty(after);
        scanned.map = mergeWindow(std::move(scanned.map), shown);
        scanned.faders[scanned.map.size() - shown.size()] = shownFaders(width);
        if (shown.size() < after.size()) break; // the last bank, not filled
    }
    return scanned;
}

std::vector<double> Calibration::shownFaders(std::size_t width) const {
    return jobs.runtime.syncMain([this, width] {
        const auto& faders = state.published.faders;
        return std::vector<double>(faders.begin(), faders.begin() + static_cast<std::ptrdiff_t>(width));
    });
}

void Calibration::commit(Scanned scanned) {
    assert(jobs.runtime.onMain());
    state.published.trackMap = std::move(scanned.map);
    const std::size_t tracks = state.published.trackMap.size();
    state.session.sessFaders = fadersOfSession(scanned.faders, tracks);
    const bool captured = !state.session.sessAutoModes.empty();
    if (captured) parts.capture.ensureSessAutoPanSize(); // dropped where it was of another number of tracks
    state.session.fullTableDirty = true;
    parts.bankMap.relocalize();
    parts.log.appendLog(text("✓ Mapped all " + std::to_string(tracks) + " tracks",
                             "✓ 全 " + std::to_string(tracks) + " トラックを把握しました"));
}

void Calibration::finish() {
    assert(jobs.runtime.onMain());
    state.published.calibrating = false;
    state.published.changed();
    parts.bankMap.relocalize();
    parts.mirror.sendBankPosToClient();
    parts.metadata.refreshFullNames();
    if (state.published.bankOffset < 0) {
        retryOrGiveUp();
    } else {
        state.bank.calibrationRetried = false;
    }
}

void Calibration::retryOrGiveUp() {
    if (std::exchange(state.bank.calibrationRetried, true)) {
        parts.log.appendLog(text("Cannot determine bank position (map does not match the display)",
                                 "位置を特定できません（地図と表示が合いません）"));
        return;
    }
    parts.log.appendLog(text("Cannot determine bank position, rescanning…", "位置を特定できないため測り直します…"));
    jobs.onMainAfter(retryDelay, [this] { scanAnew(); });
}

void Calibration::scanAnew() {
    // Whoever has taken the surfaces meanwhile goes by the map that is there.
    if (!state.quiet()) return;
    state.published.trackMap.clear();
    state.published.changed(); // also when the transport runs and that has been said already
    calibrateBanks(true);
}

} // namespace lumbrine
