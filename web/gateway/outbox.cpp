#include "web/gateway/outbox.h"

#include <algorithm>

namespace lumbrine::web {

namespace {

constexpr std::uint8_t meters = 0x11;
constexpr std::uint8_t fader = 0x12;

// What a newer message must begin with to make this one obsolete: version and type, for a fader also the strip. Empty
// when none does.
ByteView subject(ByteView message) {
    if (message.size() >= 2 && message[1] == meters) return message.first(2);
    if (message.size() >= 3 && message[1] == fader) return message.first(3);
    return {};
}

} // namespace

bool Outbox::put(ByteView message) {
    const ByteView about = subject(message);
    const auto obsolete = std::ranges::find_if(
        messages, [&](const Bytes& waiting) { return !about.empty() && std::ranges::equal(subject(waiting), about); });
    const bool replaces = obsolete != messages.end();
    const std::size_t freed = replaces ? obsolete->size() : 0;
    if (messages.size() + 1 - (replaces ? 1 : 0) > mostMessages || bytes - freed + message.size() > mostBytes)
        return false;
    if (replaces) messages.erase(obsolete);
    messages.emplace_back(message.begin(), message.end());
    bytes = bytes - freed + message.size();
    return true;
}

Bytes Outbox::take() {
    Bytes oldest = std::move(messages.front());
    messages.pop_front();
    bytes -= oldest.size();
    return oldest;
}

} // namespace lumbrine::web
