#include "model/bank/surface_walk.h"

#include <utility>

namespace lumbrine {

SurfaceWalk::SurfaceWalk(const Jobs& jobs, ReceiverState& state, SurfaceDesk& desk, SurfaceMoves& moves,
                         BankMap& bankMap, ClientMirror& mirror)
    : jobs(jobs), state(state), desk(desk), moves(moves), bankMap(bankMap), mirror(mirror) {}

std::optional<SurfaceWalk::Start> SurfaceWalk::begin(const std::function<bool(const Start&)>& wanted) {
    return jobs.runtime.syncMain([this, &wanted] { return take(wanted); });
}

std::optional<SurfaceWalk::Start> SurfaceWalk::take(const std::function<bool(const Start&)>& wanted) {
    const PublishedState& published = state.published;
    if (!published.huiConnected || published.session.empty() || !state.quiet()) return std::nullopt;
    const Start start{
        .transportRunning = state.transportRunning(),
        .session = {.tracks = static_cast<int>(published.session.size()), .width = published.winW},
        .offset = published.bankOffset,
    };
    if (!wanted(start) || !desk.take(BankUser::walk)) return std::nullopt;
    return start;
}

void SurfaceWalk::end(const Start& start, std::function<void()> rest) {
    if (start.offset >= 0) moves.moveWindowReliably(start.offset);
    jobs.runOnMain([this, rest = std::move(rest)] {
        desk.giveBack();
        bankMap.resetForBankMove();
        bankMap.relocalize();
        mirror.send(occasion::afterWalk);
        rest();
    });
}

} // namespace lumbrine
