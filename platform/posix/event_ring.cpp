#include "platform/posix/event_ring.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <cstring>
#include <limits>

namespace lumbrine {

namespace {

using Length = std::uint32_t;

} // namespace

// Positions are counters modulo the capacity. Only a power of two keeps them right when a counter wraps around.
EventRing::EventRing(std::size_t capacityInBytes)
    : capacity(std::bit_ceil(capacityInBytes)), storage(std::make_unique<std::uint8_t[]>(capacity)) {}

bool EventRing::push(ByteView event) {
    const std::size_t end = written.load(std::memory_order_relaxed);
    const std::size_t space = capacity - (end - taken.load(std::memory_order_acquire));
    if (event.empty() || event.size() > std::numeric_limits<Length>::max()) return false;
    if (space < sizeof(Length) || space - sizeof(Length) < event.size()) return false;

    const auto length = std::bit_cast<std::array<std::uint8_t, sizeof(Length)>>(static_cast<Length>(event.size()));
    copyIn(end, length);
    copyIn(end + sizeof(Length), event);
    // Publishes length and bytes together: the reader sees the whole event or nothing.
    written.store(end + sizeof(Length) + event.size(), std::memory_order_release);
    return true;
}

std::size_t EventRing::nextSize() const {
    const std::size_t begin = taken.load(std::memory_order_relaxed);
    if (begin == written.load(std::memory_order_acquire)) return 0;
    std::array<std::uint8_t, sizeof(Length)> length{};
    copyOut(begin, length);
    return std::bit_cast<Length>(length);
}

void EventRing::pop(std::span<std::uint8_t> into) {
    assert(into.size() == nextSize() && !into.empty());
    const std::size_t begin = taken.load(std::memory_order_relaxed);
    copyOut(begin + sizeof(Length), into);
    // Frees the space only after the copy; the writer may overwrite it at once.
    taken.store(begin + sizeof(Length) + into.size(), std::memory_order_release);
}

void EventRing::drop() {
    const std::size_t size = nextSize();
    assert(size > 0);
    taken.store(taken.load(std::memory_order_relaxed) + sizeof(Length) + size, std::memory_order_release);
}

void EventRing::clear() {
    taken.store(written.load(std::memory_order_acquire), std::memory_order_release);
}

void EventRing::copyIn(std::size_t position, ByteView bytes) {
    const std::size_t offset = position % capacity;
    const std::size_t first = std::min(bytes.size(), capacity - offset);
    std::memcpy(storage.get() + offset, bytes.data(), first);
    std::memcpy(storage.get(), bytes.data() + first, bytes.size() - first);
}

void EventRing::copyOut(std::size_t position, std::span<std::uint8_t> bytes) const {
    const std::size_t offset = position % capacity;
    const std::size_t first = std::min(bytes.size(), capacity - offset);
    std::memcpy(bytes.data(), storage.get() + offset, first);
    std::memcpy(bytes.data() + first, storage.get(), bytes.size() - first);
}

} // namespace lumbrine
