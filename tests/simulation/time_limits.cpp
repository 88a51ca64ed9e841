#include "tests/simulation/time_limits.h"

#include <algorithm>

namespace lumbrine::simulation {

namespace {

constexpr Duration press = seconds(0.03);
constexpr Duration quietWait = seconds(0.46);    // 0.45 s, noticed by the next look
constexpr Duration stableWindow = seconds(0.72); // six samples
constexpr int attempts = 4;
constexpr int corrections = 2;

// Presses from anywhere to anywhere.
int banksOf(SessionSize size) {
    return size.tracks / size.strips + 1;
}
int pressesOf(SessionSize size) {
    constexpr int most = 200;
    return std::min(banksOf(size) + size.strips, most);
}

Duration moveLimit(SessionSize size) {
    return 2 * quietWait + (press + seconds(0.12)) * pressesOf(size);
}

Duration reliableMoveLimit(SessionSize size) {
    const Duration lookAtIt = seconds(0.85);
    const Duration pause = seconds(0.1);
    return attempts * (moveLimit(size) + lookAtIt + pause);
}

} // namespace

Duration seekLimit(SessionSize size) {
    const Duration linger = seconds(0.06);
    const Duration way = banksOf(size) * (press + quietWait) + size.strips * (press + seconds(0.012));
    return quietWait + (1 + corrections) * (way + linger + quietWait);
}

Duration scanLimit(SessionSize size) {
    constexpr int banks = 64;
    const Duration settle = seconds(6.05);
    const Duration bank = stableWindow + press + quietWait + stableWindow;
    return settle + 2 * stableWindow + 2 * banks * bank + moveLimit(size);
}

Duration walkLimit(const WalkRequest& walk, SessionSize size) {
    const Duration probe = seconds(0.15);
    switch (walk.kind) {
    case WalkRequest::Kind::faders:
        return walk.steps * (reliableMoveLimit(size) + press) + reliableMoveLimit(size);
    case WalkRequest::Kind::modes:
        return walk.steps * (reliableMoveLimit(size) + seconds(0.11) + probe) + reliableMoveLimit(size);
    case WalkRequest::Kind::range:
        break;
    }
    // Each look at the displays gets at least one track further.
    return walk.steps * (reliableMoveLimit(size) + size.strips * probe) + reliableMoveLimit(size);
}

Duration recoveryLimit(SessionSize size) {
    return seconds(75) + seconds(3) * banksOf(size);
}

} // namespace lumbrine::simulation
