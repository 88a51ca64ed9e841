#include "model/bank/visible_range_walk.h"

#include <algorithm>
#include <cassert>
#include <memory>

namespace lumbrine {

VisibleRangeWalk::VisibleRangeWalk(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Parts parts)
    : jobs(jobs), state(state), log(log), parts(parts) {}

void VisibleRangeWalk::refreshVisibleRange(int start, int count, Asked asked) {
    jobs.runOnMain([this, start, count, asked] { request(start, count, asked); });
}

void VisibleRangeWalk::request(int start, int count, Asked asked) {
    const auto range = std::make_shared<Range>();
    parts.walk.request({
        .purpose = SurfaceWalk::Purpose::range,
        .name = command_name::rangeWalk,
        .asked = asked,
        .wanted =
            [this, start, count, range](const SurfaceWalk::Start& at) {
                *range = {.begin = std::max(start, 0), .end = std::min(start + std::max(count, 1), at.session.tracks)};
                if (range->begin >= range->end) return false;
                state.published.session.surveyed = true;
                return true;
            },
        .steps = [this, range, asked](const SurfaceWalk::Start& at) { captureRange(*range, asked, at.session); },
        .report = [this, range] { report(*range); },
    });
}

void VisibleRangeWalk::captureRange(Range range, const Asked& asked, BankLayout session) {
    int wanted = range.begin;
    while (parts.walk.goesOn(asked)) {
        parts.moves.moveWindowReliably(std::min(wanted, session.maxOffset()));
        const int shown = parts.moves.shownOffset();
        if (shown < 0) return;
        for (int i = 0; i < session.width; ++i)
            if (range.contains(shown + i) && parts.walk.goesOn(asked)) captureTrack(*Strip::of(i), shown + i, asked);
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

void VisibleRangeWalk::captureTrack(Strip strip, int track, const Asked& asked) {
    const std::uint8_t mode = parts.automation.autoProbe(strip, asked.owner);
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
