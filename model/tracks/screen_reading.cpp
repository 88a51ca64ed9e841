#include "model/tracks/screen_reading.h"

#include "model/state/screen_permission.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace lumbrine {

void ScreenReading::wish(Kind kind, Reading reading) {
    assert(jobs.runtime.onMain());
    const auto same = std::ranges::find(waiting, kind, &Wish::kind);
    if (same != waiting.end()) {
        same->reading = std::move(reading);
    } else {
        waiting.push_back({.kind = kind, .reading = std::move(reading)});
    }
    proceed();
}

void ScreenReading::proceed() {
    if (isReading || isResting || waiting.empty()) return;
    if (const Duration rest = restUntil - jobs.runtime.now(); rest > Duration::zero()) {
        isResting = true;
        return jobs.onMainAfter(rest, [this] {
            isResting = false;
            proceed();
        });
    }
    begin(std::move(waiting.front().reading));
    waiting.erase(waiting.begin());
}

void ScreenReading::begin(Reading reading) {
    isReading = true;
    jobs.inBackground(Priority::utility, [this, reading = std::move(reading)] {
        const TimePoint began = jobs.runtime.now();
        const std::optional<NoReading> failure = reading();
        jobs.runOnMain([this, took = jobs.runtime.now() - began, failure] { ended(took, failure); });
    });
}

void ScreenReading::ended(Duration took, std::optional<NoReading> failure) {
    isReading = false;
    const bool isRefused = failure == NoReading::refused;
    const Duration rest = took > longest ? Duration::zero() : restFactor * took;
    restUntil = jobs.runtime.now() + std::max(rest, isRefused ? restWhenRefused : Duration::zero());
    if (isRefused && !std::exchange(refusalTold, true)) sayThatTheScreenIsRefused(log);
    if (!failure) refusalTold = false;
    proceed();
}

} // namespace lumbrine
