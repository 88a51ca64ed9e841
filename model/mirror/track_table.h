// The session's tracks as rows for the client. Main thread only.
//
// A long session's rows go out in several jobs of the main queue, so that nobody else waits for all of them.
#pragma once

#include "base/bytes.h"
#include "model/mirror/client_endpoint.h"
#include "model/state/jobs.h"
#include "model/state/receiver_state.h"

#include <functional>
#include <string>

namespace lumbrine {

class TrackTable {
public:
    static constexpr std::size_t rowsOfAJob = 64;

    TrackTable(const Jobs& jobs, const ReceiverState& state, ClientEndpoint& endpoint);

    // The row of one track of the session, as a datagram. What is not known of the track is left neutral.
    Bytes buildTrackRow(std::size_t index) const;

    // The first rows go out before it returns. `then` is called once after the last one, by the same job.
    void sendAllRowsTo(const std::string& key, std::function<void()> then);
    void broadcastAllRows();

private:
    struct Course {
        std::function<void(ByteView row)> send;
        std::function<void()> then;
    };

    void sendRowsFrom(std::size_t first, Course course);

    const Jobs& jobs;
    const ReceiverState& state;
    ClientEndpoint& endpoint;
};

} // namespace lumbrine
