// When a scan of the banks is due by itself: while there is no map, and when the map has stopped matching what the
// surfaces show. Looked at by the periodic tick. Main thread only.
#pragma once

#include "base/bilingual.h"
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
        ActivityLog& log;
    };

    PositionWatch(Runtime& rt, ReceiverState& receiverState, Parts otherParts, Bilingual bilingual);

    void watchStuckPosition();
    void watchMissingMap();

private:
    bool positionIsStuck() const;
    void scan();

    Runtime& runtime;
    ReceiverState& state;
    const Parts parts;
    const Bilingual text;
};

} // namespace lumbrine
