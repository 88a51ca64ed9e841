#include "model/hands/host_reaction.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

void HostReaction::pressed(TimePoint at) {
    const bool isAlone = at - last > slowest + margin;
    last = at;
    const bool hadNoEffect = open && at - *open > longest;
    if (hadNoEffect) ++learned;
    if (isAlone && (!open || hadNoEffect)) open = at;
}

void HostReaction::shown(TimePoint at) {
    const auto press = std::exchange(open, std::nullopt);
    if (!press || at - *press > longest) return;
    const Duration took = at - *press;
    slowest = took > slowest ? took : slowest - (slowest - took) / 8;
    ++learned;
}

Duration HostReaction::patience() const {
    return learned < enough ? longest : std::clamp(slowest + margin, shortest, longest);
}

} // namespace lumbrine
