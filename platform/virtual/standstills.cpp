#include "platform/virtual/standstills.h"

#include "platform/virtual/split_mix.h"

namespace lumbrine {

std::optional<Duration> Standstills::at(TimePoint now, std::string_view threadName, Pace& pace) {
    if (how.every <= Duration::zero() || (how.meets && !how.meets(threadName))) return std::nullopt;
    if (!pace.next) drawNext(now, pace);
    if (now < *pace.next) return std::nullopt;
    if (pace.pointsLeft > 0) {
        --pace.pointsLeft;
        return std::nullopt;
    }
    const auto spread = static_cast<std::uint64_t>((how.longest - how.shortest).count());
    const Duration length = how.shortest + Duration(below(spread + 1));
    drawNext(now + length, pace);
    return length;
}

// The pause comes up to seven switching points after its time. The first point after a long wait is nearly always the
// end of the wait itself, so pausing there only would never hit the code that follows.
void Standstills::drawNext(TimePoint now, Pace& pace) {
    constexpr std::uint64_t points = 8;
    pace.next = now + Duration(below(2 * static_cast<std::uint64_t>(how.every.count())));
    pace.pointsLeft = below(points);
}

std::uint64_t Standstills::below(std::uint64_t limit) {
    return nextSplitMix(draws) % limit;
}

} // namespace lumbrine
