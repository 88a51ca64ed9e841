#include "model/mirror/track_table.h"

#include "client_link/state_messages.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace lumbrine {

TrackTable::TrackTable(const Jobs& jobs, const ReceiverState& state, ClientEndpoint& endpoint)
    : jobs(jobs), state(state), endpoint(endpoint) {}

Bytes TrackTable::buildTrackRow(std::size_t index) const {
    const Track& track = state.published.session.tracks[index];
    return trackRowMessage(static_cast<int>(index), {.fader = track.fader,
                                                     .mute = track.mute,
                                                     .solo = track.solo,
                                                     .record = track.record,
                                                     .color = track.color,
                                                     .inputMonitor = track.inputMonitor,
                                                     .select = track.select,
                                                     .name = track.name ? *track.name : track.display,
                                                     .comment = track.comment});
}

void TrackTable::sendAllRowsTo(const std::string& key, std::function<void()> then) {
    sendRowsFrom(0, {[this, key](ByteView row) { endpoint.send(row, key); }, std::move(then)});
}

void TrackTable::broadcastAllRows() {
    sendRowsFrom(0, {[this](ByteView row) { endpoint.broadcast(row); }, [] {}});
}

// The session may be another one than for the rows before, and shorter.
void TrackTable::sendRowsFrom(std::size_t first, Course course) {
    assert(jobs.runtime.onMain());
    const std::size_t tracks = state.published.session.size();
    const std::size_t end = std::min(first + rowsOfAJob, tracks);
    for (std::size_t track = first; track < end; ++track)
        course.send(buildTrackRow(track));
    if (end >= tracks) return course.then();
    // A job of its own for the next rows lets what else waits for the main thread in between.
    jobs.runtime.postMain(
        jobs.guarded([this, end, course = std::move(course)]() mutable { sendRowsFrom(end, std::move(course)); }));
}

} // namespace lumbrine
