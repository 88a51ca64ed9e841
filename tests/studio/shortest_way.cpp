#include "tests/studio/shortest_way.h"

#include "simulator/bank_rules.h"

#include <cstdlib>
#include <set>

namespace lumbrine {

namespace {

constexpr int corrections = 2;

int nextMultiple(int offset, int direction, int width) {
    do
        offset += direction;
    while (offset % width != 0);
    return offset;
}

} // namespace

int fewestPresses(int from, int to, int width) {
    const int direction = from < to ? 1 : -1;
    std::set<int> reached{from};
    for (int presses = 0;; ++presses) {
        if (reached.contains(to)) return presses;
        std::set<int> next;
        for (const int offset : reached)
            for (const int after : {offset + direction, nextMultiple(offset, direction, width)})
                if (std::abs(to - after) + std::abs(after - from) == std::abs(to - from)) next.insert(after);
        reached = std::move(next);
    }
}

testing::AssertionResult areStepsAndCorrections(const std::vector<Press>& presses, int from, int to,
                                                const SimulatorOptions& options, int tracks) {
    const int width = stripsPerSurface * options.surfaces;
    std::size_t made = 0;
    int offset = from;
    for (int attempt = 0; attempt <= corrections && offset != to; ++attempt) {
        const std::size_t end = made + static_cast<std::size_t>(fewestPresses(offset, to, width));
        if (end > presses.size())
            return testing::AssertionFailure() << presses.size() << " presses from " << from << " to " << to
                                               << ", where attempt " << attempt << " should end at " << end;
        for (; made < end; ++made)
            offset = bankOffsetAfter(static_cast<BankButton>(presses[made]), offset, tracks, width, options);
    }
    if (made == presses.size()) return testing::AssertionSuccess();
    return testing::AssertionFailure() << presses.size() << " presses from " << from << " to " << to << ", not "
                                       << made;
}

} // namespace lumbrine
