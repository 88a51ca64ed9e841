#include "app/macos/promptness.h"

#include <utility>

namespace lumbrine {

Promptness::Promptness(std::function<Hold()> begin) : begin(std::move(begin)) {}

void Promptness::follow(const PublishedState& published) {
    const bool needed = published.huiConnected || published.iosConnected;
    if (needed && !hold) hold = begin();
    if (!needed) hold.reset();
}

} // namespace lumbrine
