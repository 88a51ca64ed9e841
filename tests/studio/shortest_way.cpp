#include "tests/studio/shortest_way.h"

#include <algorithm>
#include <cstdlib>
#include <set>

namespace lumbrine {

namespace {

int nextMultiple(int offset, int direction, int width) {
    do
        offset += direction;
    while (offset % width != 0);
    return offset;
}

int afterBank(int offset, int direction, BankButtons buttons) {
    const bool aligns = direction > 0 ? buttons.rightAligns : buttons.leftAligns;
    return std::max(aligns ? nextMultiple(offset, direction, buttons.width) : offset + direction * buttons.width, 0);
}

} // namespace

int fewestPresses(int from, int to, BankButtons buttons) {
    const int direction = from < to ? 1 : -1;
    std::set<int> reached{from};
    for (int presses = 0;; ++presses) {
        if (reached.contains(to)) return presses;
        std::set<int> next;
        for (const int offset : reached)
            for (const int after : {offset + direction, afterBank(offset, direction, buttons)})
                if (std::abs(to - after) + std::abs(after - from) == std::abs(to - from)) next.insert(after);
        reached = std::move(next);
    }
}

} // namespace lumbrine
