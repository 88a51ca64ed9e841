#include "platform/virtual/virtual_connection.h"

#include <utility>

namespace lumbrine {

void VirtualLine::send(ByteView bytes, Duration delay) {
    const auto held = connection.lock();
    if (held && !bytes.empty()) held->arrive({bytes.begin(), bytes.end()}, delay);
}

void VirtualLine::drip(ByteView bytes, Duration interval) {
    Duration delay = Duration::zero();
    for (const std::uint8_t byte : bytes)
        send({&byte, 1}, delay += interval);
}

void VirtualLine::finish(Duration delay) {
    if (const auto held = connection.lock()) held->arrive({}, delay);
}

void VirtualLine::reset() {
    const auto held = connection.lock();
    if (!held) return;
    held->wasReset = true;
    held->arrivals.clear();
    held->changed->notifyAll();
}

void VirtualLine::stopReading() {
    if (const auto held = connection.lock()) held->reading = false;
}

void VirtualLine::readAgain() {
    const auto held = connection.lock();
    if (!held || held->reading) return;
    held->reading = true;
    const Bytes waiting = std::exchange(held->unread, {});
    held->changed->notifyAll();
    if (!waiting.empty() && held->peer) held->peer->received(waiting);
}

bool VirtualLine::isOpen() const {
    const auto held = connection.lock();
    return held && !held->finished && !held->wasReset;
}

} // namespace lumbrine
