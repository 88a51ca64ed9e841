// The session's tracks as rows for the client. Main thread only.
#pragma once

#include "base/bytes.h"
#include "model/client_endpoint.h"
#include "model/receiver_state.h"

#include <string>

namespace lumbrine {

class TrackTable {
public:
    TrackTable(const ReceiverState& receiverState, ClientEndpoint& clientEndpoint);

    // The row of one track of the track map, as a datagram. What is not known of the track is left neutral.
    Bytes buildTrackRow(std::size_t index) const;

    void sendAllRowsTo(const std::string& key);
    void broadcastAllRows();

private:
    const ReceiverState& state;
    ClientEndpoint& endpoint;
};

} // namespace lumbrine
