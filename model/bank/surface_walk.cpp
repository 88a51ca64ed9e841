#include "model/bank/surface_walk.h"

#include <cassert>
#include <utility>

namespace lumbrine {

SurfaceWalk::SurfaceWalk(const Jobs& modelJobs, ReceiverState& receiverState, SurfaceMoves& surfaceMoves, BankMap& map,
                         ClientMirror& clientMirror)
    : jobs(modelJobs), state(receiverState), moves(surfaceMoves), bankMap(map), mirror(clientMirror) {}

std::optional<SurfaceWalk::Start> SurfaceWalk::begin(const std::function<bool(const Start&)>& wanted) {
    return jobs.runtime.syncMain([this, &wanted] { return take(wanted); });
}

std::optional<SurfaceWalk::Start> SurfaceWalk::take(const std::function<bool(const Start&)>& wanted) {
    const PublishedState& published = state.published;
    if (!published.huiConnected || published.trackMap.empty() || !state.quiet()) return std::nullopt;
    const Start start{
        .transportRunning = state.transportRunning(),
        .session = {.tracks = static_cast<int>(published.trackMap.size()), .width = published.winW},
        .offset = published.bankOffset,
    };
    if (!wanted(start)) return std::nullopt;
    state.bank.groupApplying = true;
    return start;
}

void SurfaceWalk::end(const Start& start, std::function<void()> rest) {
    if (start.offset >= 0) moves.moveWindowReliably(start.offset);
    jobs.runOnMain([this, rest = std::move(rest)] {
        giveBack();
        rest();
    });
}

void SurfaceWalk::giveBack() {
    assert(jobs.runtime.onMain());
    state.bank.groupApplying = false;
    bankMap.resetForBankMove();
    bankMap.relocalize();
    mirror.sendBankPosToClient();
    mirror.sendShownTrackNames();
    mirror.sendAllSwitches();
    mirror.sendShownFaders();
}

} // namespace lumbrine
