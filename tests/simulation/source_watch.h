// What the receiver tells of the tracks' full names, colours and comments, each time it is something else.
#pragma once

#include "model/state/receiver_state.h"
#include "platform/api/runtime.h"
#include "tests/simulation/host_truth.h"

#include <memory>
#include <optional>
#include <vector>

namespace lumbrine::simulation {

struct ToldTracks {
    TimePoint at;
    Names map;
    Names full;
    std::vector<std::optional<RGBColor>> colors;
    Names comments;
};

// Main thread. The state outlives it.
class SourceWatch {
public:
    SourceWatch(Runtime& rt, const ReceiverState& receiverState);

    // Looks now. The watch also looks by itself every 0.2 s; others call this where more may have changed.
    void look();

    std::vector<ToldTracks> take() { return std::move(told); }

private:
    Runtime& runtime;
    const ReceiverState& state;
    std::vector<ToldTracks> told;
    const std::unique_ptr<RepeatingTimer> timer;
};

} // namespace lumbrine::simulation
