#include "model/mirror/track_table.h"

#include "client_link/state_messages.h"

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

void TrackTable::sendAllRowsTo(const std::string& key, std::function<void()> whenSent) {
    assert(jobs.runtime.onMain());
    readBy(key);
    for (std::size_t track = 0; track < state.published.session.size(); ++track)
        due.insert(due.end(), track);
    then = std::move(whenSent);
    sendInTime();
}

void TrackTable::sendChangedRows() {
    assert(jobs.runtime.onMain());
    const auto owner = endpoint.liveOwnerKey();
    if (!owner) return;
    readBy(*owner);
    lastSent.resize(state.published.session.size());
    for (std::size_t track = 0; track < lastSent.size(); ++track) {
        if (buildTrackRow(track) != lastSent[track]) {
            due.insert(track);
        } else {
            note(track); // a row that says the same of another track stands for that one
        }
    }
    if (!due.empty()) sendInTime();
}

void TrackTable::readBy(const std::string& key) {
    toldTo = endpoint.ownership();
    if (std::exchange(reader, key) == key) return;
    lastSent.clear();
    due.clear();
    toldRows.clear();
    next = 0;
    then = [] {};
}

void TrackTable::sendInTime() {
    if (batchIsPosted) return;
    const TimePoint now = jobs.runtime.now();
    if (now < nextBatchAt) {
        sendAfter(nextBatchAt - now);
    } else {
        sendBatch();
    }
}

void TrackTable::sendAfter(Duration delay) {
    batchIsPosted = true;
    jobs.onMainAfter(delay, [this] {
        batchIsPosted = false;
        sendBatch();
    });
}

void TrackTable::sendBatch() {
    lastSent.resize(state.published.session.size());
    due.erase(due.lower_bound(lastSent.size()), due.end()); // the session may have become shorter
    for (std::size_t row = 0; row < rowsOfABatch && !due.empty(); ++row)
        sendNextDue();
    nextBatchAt = jobs.runtime.now() + batchInterval;
    if (due.empty()) {
        std::exchange(then, [] {})();
    } else {
        sendAfter(batchInterval);
    }
}

void TrackTable::sendNextDue() {
    auto row = due.lower_bound(next);
    if (row == due.end()) row = due.begin();
    Bytes& sent = lastSent[*row];
    sent = buildTrackRow(*row);
    endpoint.send(sent, reader);
    note(*row);
    next = *row + 1;
    due.erase(row);
}

void TrackTable::note(std::size_t row) {
    if (toldRows.size() <= row) toldRows.resize(row + 1);
    toldRows[row] = state.trackAt(row);
}

std::optional<TrackRef> TrackTable::meant(std::size_t row, Ownership owner) const {
    if (owner == toldTo && row < toldRows.size() && toldRows[row]) return toldRows[row];
    const bool isThere = row < state.published.session.size();
    return owner.isNewcomers && isThere ? std::optional(state.trackAt(row)) : std::nullopt;
}

std::optional<TrackIdentity> TrackTable::identityMeant(std::size_t row, Ownership owner) const {
    const auto track = meant(row, owner);
    if (!track) return std::nullopt;
    const auto place = track->track.name.empty() ? state.placeOf(*track) : std::nullopt;
    return place ? state.published.session.tracks[*place].identity() : track->track;
}

} // namespace lumbrine
