// The four navigation buttons: one channel or one bank, back or forward.
#pragma once

#include "model/bank/bank_map.h"
#include "model/bank/seek_worker.h"
#include "model/hands/surfaces.h"
#include "model/state/jobs.h"

namespace lumbrine {

class BankMoves {
public:
    BankMoves(const Jobs& modelJobs, ReceiverState& receiverState, Surfaces& hostSurfaces, BankMap& map,
              SeekWorker& worker);

    // 0 channel back, 1 bank back, 2 channel forward, 3 bank forward; others do nothing. A seek by that distance when
    // it is known where the surfaces are and there is more than they show; else the button itself. Any thread.
    void bankMove(int kind);

private:
    void move(int kind);

    const Jobs& jobs;
    ReceiverState& state;
    Surfaces& surfaces;
    BankMap& bankMap;
    SeekWorker& seekWorker;
};

} // namespace lumbrine
