// Following the track list where it has changed, without taking the surfaces: tracks that were added, removed, moved,
// renamed, hidden or shown. What the strips show must agree. A list of another session leads to a scan, and so does one
// that may help where a scan was not sure.
#pragma once

#include "model/bank/bank_map.h"
#include "model/bank/calibration.h"
#include "model/bank/track_capture.h"
#include "model/tracks/track_metadata.h"

#include <vector>

namespace lumbrine {

class MapMender {
public:
    // For so long a list has to stay as it is before it counts for tracks that no strip shows.
    static constexpr Duration settled = seconds(2.4);

    struct Parts {
        BankMap& bankMap;
        TrackCapture& capture;
        ClientMirror& mirror;
        TrackMetadata& metadata;
        Calibration& calibration;
    };

    MapMender(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Parts parts);

    // Called by the periodic tick. Main thread.
    void watchTrackList();

private:
    bool isNews(const std::vector<TrackIdentity>& listed) const;
    void take(Session mended);

    const Jobs& jobs;
    ReceiverState& state;
    ActivityLog& log;
    const Parts parts;
    std::vector<TrackIdentity> seen; // the list that was looked at last
    TimePoint seenSince;
};

} // namespace lumbrine
