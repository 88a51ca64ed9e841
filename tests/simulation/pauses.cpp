#include "tests/simulation/pauses.h"

#include <algorithm>

namespace lumbrine::simulation {

Pauses::Pauses(const std::vector<Pause>& pauses) {
    for (const Pause& pause : pauses) {
        if (united.empty() || pause.from > united.back().until) {
            united.push_back(pause);
        } else {
            united.back().until = std::max(united.back().until, pause.until);
        }
    }
}

Duration Pauses::within(TimePoint from, TimePoint until) const {
    Duration sum = Duration::zero();
    auto pause = std::ranges::lower_bound(united, from, {}, &Pause::until);
    for (; pause != united.end() && pause->from < until; ++pause)
        sum += std::min(until, pause->until) - std::max(from, pause->from);
    return sum;
}

TimePoint Pauses::before(TimePoint at, Duration time) const {
    auto pause = std::ranges::lower_bound(united, at, {}, &Pause::from);
    while (pause != united.begin()) {
        --pause;
        const Duration since = std::max(at - pause->until, Duration::zero());
        if (since >= time) break;
        time -= since;
        at = pause->from;
    }
    return at - time;
}

TimePoint Pauses::earliest(TimePoint happened) const {
    const auto pause = std::ranges::lower_bound(united, happened, {}, &Pause::until);
    return pause != united.end() ? std::min(happened, pause->from) : happened;
}

TimePoint Pauses::latest(TimePoint due) const {
    const auto pause = std::ranges::lower_bound(united, due, {}, &Pause::until);
    return pause != united.end() && pause->from <= due ? pause->until : due;
}

} // namespace lumbrine::simulation
