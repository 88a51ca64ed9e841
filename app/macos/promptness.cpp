#include "app/macos/promptness.h"

#include <utility>

namespace lumbrine {

Promptness::Promptness(std::function<Hold()> beginHold) : begin(std::move(beginHold)) {}

void Promptness::follow(const PublishedState& published) {
    const bool needed = published.huiConnected || published.iosConnected;
    if (needed && !hold) hold = begin();
    if (!needed) hold.reset();
}

} // namespace lumbrine
