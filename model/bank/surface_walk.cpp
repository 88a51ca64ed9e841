#include "model/bank/surface_walk.h"

#include <cassert>
#include <memory>
#include <utility>

namespace lumbrine {

namespace {

constexpr Duration valueOverName = seconds(2.0);

} // namespace

SurfaceWalk::SurfaceWalk(const Jobs& jobs, ReceiverState& state, Parts parts)
    : jobs(jobs), state(state), parts(parts) {}

void SurfaceWalk::request(Plan asked) {
    assert(jobs.runtime.onMain());
    struct Walk {
        Plan plan;
        Start start;
    };
    const auto walk = std::make_shared<Walk>(Walk{.plan = std::move(asked), .start = {}});
    parts.queue.request({
        .kind = DeskJob::Kind::walk,
        .name = walk->plan.name,
        .subject = static_cast<int>(walk->plan.purpose),
        .owner = walk->plan.asked.owner,
        .until = walk->plan.asked.at + patience,
        .begin =
            [this, walk] {
                walk->start = start();
                const auto reason = obstacle(walk->plan);
                if (!reason) return walk->plan.wanted(walk->start);
                parts.drops.tell(walk->plan.name, *reason);
                walk->plan.dropped();
                return false;
            },
        .work =
            [this, walk] {
                // A value over a name goes after a second or so, and then the view can be returned to.
                if (walk->start.offset < 0) walk->start.offset = parts.moves.recognizedOffset(valueOverName);
                walk->plan.steps(walk->start);
                if (walk->start.offset >= 0) parts.moves.returnTo(walk->start.offset);
            },
        .end = [this, walk] { end(walk->plan); },
        .dropped = [walk] { walk->plan.dropped(); },
    });
}

SurfaceWalk::Start SurfaceWalk::start() const {
    const PublishedState& published = state.published;
    return {
        .session = {.tracks = static_cast<int>(published.session.size()), .width = published.winW},
        .offset = published.bankOffset,
    };
}

std::optional<DropReason> SurfaceWalk::obstacle(const Plan& plan) const {
    if (!state.published.huiConnected) return DropReason::notConnected;
    if (state.published.session.empty()) return DropReason::positionUnknown;
    if (state.transportRunning() && !plan.whileTransportRuns) return DropReason::transportRuns;
    return std::nullopt;
}

void SurfaceWalk::end(const Plan& plan) {
    parts.capture.allShown();
    parts.bankMap.resetForBankMove();
    parts.bankMap.relocalize();
    parts.mirror.send(occasion::afterWalk);
    if (!goesOn(plan.asked)) return parts.drops.tell(plan.name, DropReason::ownerChanged);
    plan.report();
}

} // namespace lumbrine
