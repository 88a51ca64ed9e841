#include "model/bank/visible_range_walk.h"

#include <algorithm>
#include <cassert>

namespace lumbrine {

VisibleRangeWalk::VisibleRangeWalk(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Parts parts)
    : jobs(jobs), state(state), log(log), parts(parts) {}

void VisibleRangeWalk::refreshVisibleRange(int start, int count) {
    jobs.onQueue(parts.automation.queue(), [this, start, count] { walkOver(start, count); });
}

void VisibleRangeWalk::walkOver(int start, int count) {
    Range range;
    const auto begun = parts.walk.begin([&](const SurfaceWalk::Start& at) {
        range = {.begin = std::max(start, 0), .end = std::min(start + std::max(count, 1), at.session.tracks)};
        if (at.transportRunning || range.begin >= range.end) return false;
        state.published.session.surveyed = true;
        return true;
    });
    if (!begun) return;
    captureRange(range, begun->session);
    parts.walk.end(*begun, [this, range] { report(range); });
}

void VisibleRangeWalk::captureRange(Range range, BankLayout session) {
    int wanted = range.begin;
    while (true) {
        parts.moves.moveWindowReliably(std::min(wanted, session.maxOffset()));
        const int shown = parts.moves.shownOffset();
        if (shown < 0) return;
        for (int i = 0; i < session.width; ++i)
            if (range.contains(shown + i)) captureTrack(*Strip::of(i), shown + i);
        const int next = shown + session.width;
        // The surfaces have not advanced, or nobody is there to move them.
        if (next <= wanted || !connected()) {
            log.say("Aborted capturing the visible range (Pro Tools is not responding)",
                    "表示範囲の採取を中断しました（Pro Tools が応答しません）");
            return;
        }
        if (next >= range.end) return;
        wanted = next;
    }
}

void VisibleRangeWalk::captureTrack(Strip strip, int track) {
    const std::uint8_t mode = parts.automation.autoProbe(strip);
    jobs.runtime.syncMain([this, strip, track, mode] { store(strip, static_cast<std::size_t>(track), mode); });
}

bool VisibleRangeWalk::connected() const {
    return jobs.runtime.syncMain([this] { return state.published.huiConnected; });
}

void VisibleRangeWalk::store(Strip strip, std::size_t track, std::uint8_t mode) {
    assert(jobs.runtime.onMain());
    std::vector<Track>& tracks = state.published.session.tracks;
    if (track >= tracks.size()) return;
    if (mode != autoModeUnknown) tracks[track].mode = mode;
    const std::uint8_t side = state.published.panRight ? 1 : 0;
    const Ring& ring = state.published.strip(strip).pan[side];
    tracks[track].pan = SessionPan{.known = true, .side = side, .position = ring.position, .centre = ring.centre};
}

void VisibleRangeWalk::report(Range range) {
    assert(jobs.runtime.onMain());
    parts.mirror.sendAllPans();
    parts.mirror.sendAllAutoModes();
    parts.mirror.send(occasion::session);
    const std::string tracks = std::to_string(range.begin + 1) + "–" + std::to_string(range.end);
    log.say("✓ Captured auto/pan for visible range " + tracks, "✓ 表示範囲 " + tracks + " の auto/pan を採取しました");
}

} // namespace lumbrine
