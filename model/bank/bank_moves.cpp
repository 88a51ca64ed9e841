#include "model/bank/bank_moves.h"

#include <array>
#include <cassert>

namespace lumbrine {

BankMoves::BankMoves(const Jobs& modelJobs, ReceiverState& receiverState, Surfaces& hostSurfaces, BankMap& map,
                     SeekWorker& worker)
    : jobs(modelJobs), state(receiverState), surfaces(hostSurfaces), bankMap(map), seekWorker(worker) {}

void BankMoves::bankMove(int kind) {
    if (kind < 0 || kind > 3) return;
    jobs.runOnMain([this, kind] { move(kind); });
}

void BankMoves::move(int kind) {
    assert(jobs.runtime.onMain());
    const PublishedState& published = state.published;
    if (state.shownStrips() < published.trackMap.size() && published.bankOffset >= 0) {
        const std::array<int, 4> distances{-1, -published.winW, 1, published.winW};
        seekWorker.seekBank(published.bankOffset + distances[static_cast<std::size_t>(kind)]);
        return;
    }
    // The press blocks for 30 ms. Surface A leads; Pro Tools moves both.
    jobs.inBackground(Priority::userInitiated, [this, kind] { surfaces.engine(SurfaceID::A).channelMove(kind); });
    bankMap.resetForBankMove();
}

} // namespace lumbrine
