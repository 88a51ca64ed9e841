#include "model/track_table.h"

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

TrackTable::TrackTable(const ReceiverState& receiverState, ClientEndpoint& clientEndpoint)
    : state(receiverState), endpoint(clientEndpoint) {}

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

void TrackTable::sendAllRowsTo(const std::string& key) {
    for (std::size_t track = 0; track < state.published.trackMap.size(); ++track)
        endpoint.send(buildTrackRow(track), key);
}

void TrackTable::broadcastAllRows() {
    for (std::size_t track = 0; track < state.published.trackMap.size(); ++track)
        endpoint.broadcast(buildTrackRow(track));
}

} // namespace lumbrine
