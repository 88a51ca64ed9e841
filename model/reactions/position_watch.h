// Starts a scan of the banks when one is due: while there is no map, when the map has stopped matching what the
// surfaces show, and when another session may be open. Called by the periodic tick. Main thread only.
#pragma once

#include "model/bank/bank_map.h"
#include "model/bank/calibration.h"
#include "model/state/activity_log.h"

namespace lumbrine {

class PositionWatch {
public:
    static constexpr int stuckTickLimit = 12; // about 4.8 s without a match
    static constexpr Duration pingRunBeforeScan = seconds(2.0);
    static constexpr Duration betweenScans = seconds(10.0);

    struct Parts {
        BankMap& bankMap;
        Calibration& calibration;
        TrackMetadata& metadata;
    };

    PositionWatch(Runtime& runtime, ReceiverState& state, ActivityLog& log, Parts parts);

    void watchStuckPosition();
    void watchMissingMap();

private:
    bool showsNames() const;
    bool positionIsStuck() const;
    void scan();

    Runtime& runtime;
    ReceiverState& state;
    ActivityLog& log;
    const Parts parts;
};

} // namespace lumbrine
