// The session's tracks as rows for the client. Main thread only.
//
// Rows go out a few at a time, so that neither the network nor other work has to wait for a long session. A row has the
// values of the time when it is sent.
#pragma once

#include "base/bytes.h"
#include "model/mirror/client_endpoint.h"
#include "model/state/jobs.h"
#include "model/state/receiver_state.h"

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace lumbrine {

class TrackTable {
public:
    // Together at most 2,000 rows a second.
    static constexpr std::size_t rowsOfABatch = 8;
    static constexpr Duration batchInterval = seconds(0.004);

    TrackTable(const Jobs& jobs, const ReceiverState& state, ClientEndpoint& endpoint);

    // The row of one track of the session, as a datagram. What is not known of the track is left neutral.
    Bytes buildTrackRow(std::size_t index) const;

    // Sends all rows to the peer with that key, from now on the table's reader, and nothing more to an earlier one.
    // `then` is called once, by the job that sends the last row; a later call before that replaces it.
    void sendAllRowsTo(const std::string& key, std::function<void()> then);

    // Sends the rows that differ from what the owner was sent last.
    void sendChangedRows();

    // The track that the client of that ownership means by the row: the one that the row stood for when it was last
    // sent to it. A newcomer that was not sent the row means what is there. Absent when it can mean none.
    std::optional<TrackRef> meant(std::size_t row, Ownership owner) const;

    // The same by what the scripting service knows it, if the name that it was sent under was a display's.
    std::optional<TrackIdentity> identityMeant(std::size_t row, Ownership owner) const;

private:
    void readBy(const std::string& key);
    void sendInTime();
    void sendAfter(Duration delay);
    void sendBatch();
    void sendNextDue();
    void note(std::size_t row);

    const Jobs& jobs;
    const ReceiverState& state;
    ClientEndpoint& endpoint;

    std::string reader;                            // who is sent the rows
    std::vector<Bytes> lastSent;                   // row by row what the reader was sent last; empty where nothing
    std::vector<std::optional<TrackRef>> toldRows; // what these rows stand for
    std::optional<Ownership> toldTo;
    std::set<std::size_t> due; // the rows to be sent
    std::size_t next = 0;      // due rows are sent in a circle, so that none waits for ever
    std::function<void()> then = [] {};

    TimePoint nextBatchAt = distantPast;
    bool batchIsPosted = false;
};

} // namespace lumbrine
