#include "model/mirror/track_table.h"

#include "client_link/state_messages.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace lumbrine {

namespace {

bool flagAt(const std::vector<bool>& flags, std::size_t index) {
    return index < flags.size() && flags[index];
}

template <typename Value>
Value valueAt(const std::vector<Value>& values, std::size_t index) {
    return index < values.size() ? values[index] : Value{};
}

std::string_view textAt(const std::vector<std::string>& texts, std::size_t index) {
    return index < texts.size() ? std::string_view(texts[index]) : std::string_view{};
}

} // namespace

TrackTable::TrackTable(const Jobs& modelJobs, const ReceiverState& receiverState, ClientEndpoint& clientEndpoint)
    : jobs(modelJobs), state(receiverState), endpoint(clientEndpoint) {}

Bytes TrackTable::buildTrackRow(std::size_t index) const {
    const PublishedState& published = state.published;
    const SessionTable& session = state.session;
    const auto& names = index < published.trackMapFull.size() ? published.trackMapFull : published.trackMap;
    return trackRowMessage(static_cast<int>(index), {.fader = valueAt(session.sessFaders, index),
                                                     .mute = flagAt(session.sessMutes, index),
                                                     .solo = flagAt(session.sessSolos, index),
                                                     .record = flagAt(session.sessRecs, index),
                                                     .color = valueAt(published.trackMapColors, index),
                                                     .inputMonitor = flagAt(published.trackMapInputMon, index),
                                                     .select = flagAt(session.sessSelects, index),
                                                     .name = textAt(names, index),
                                                     .comment = textAt(session.trackMapComments, index)});
}

void TrackTable::sendAllRowsTo(const std::string& key, std::function<void()> then) {
    sendRowsFrom(0, {[this, key](ByteView row) { endpoint.send(row, key); }, std::move(then)});
}

void TrackTable::broadcastAllRows() {
    sendRowsFrom(0, {[this](ByteView row) { endpoint.broadcast(row); }, [] {}});
}

// The map may be another one than for the rows before, and shorter.
void TrackTable::sendRowsFrom(std::size_t first, Course course) {
    assert(jobs.runtime.onMain());
    const std::size_t tracks = state.published.trackMap.size();
    const std::size_t end = std::min(first + rowsOfAJob, tracks);
    for (std::size_t track = first; track < end; ++track)
        course.send(buildTrackRow(track));
    if (end >= tracks) return course.then();
    jobs.runtime.postMain(
        jobs.guarded([this, end, course = std::move(course)]() mutable { sendRowsFrom(end, std::move(course)); }));
}

} // namespace lumbrine
