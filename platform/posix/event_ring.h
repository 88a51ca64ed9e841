// A lock-free queue of MIDI events between two threads, for realtime threads: it neither waits nor allocates.
#pragma once

#include "base/bytes.h"

#include <atomic>
#include <cstddef>
#include <memory>

namespace lumbrine {

// One thread pushes and one thread pops, at the same time, and neither ever waits. Events come out whole and in order.
// Threads that share one end need a lock for that end.
class EventRing {
public:
    // The capacity is rounded up to a power of two. An event uses four bytes more than its length.
    explicit EventRing(std::size_t capacityInBytes);

    // Returns false and changes nothing when the event is empty or does not fit the free space.
    bool push(ByteView event);

    // The length of the oldest event; 0 when the ring is empty.
    std::size_t nextSize() const;

    // Removes the oldest event and copies it to `into`. Precondition: `into` has exactly nextSize() bytes, at least
    // one.
    void pop(std::span<std::uint8_t> into);

    // Removes the oldest event without reading it. Precondition: the ring is not empty.
    void drop();

    // Removes all events. No thread may push or pop meanwhile.
    void clear();

private:
    void copyIn(std::size_t position, ByteView bytes);
    void copyOut(std::size_t position, std::span<std::uint8_t> bytes) const;

    // The number of bytes ever written and ever taken; they wrap around with the type. Each is written by one end and
    // read by the other, so they are on separate cache lines.
    alignas(64) std::atomic<std::size_t> written{0};
    const std::size_t capacity;
    const std::unique_ptr<std::uint8_t[]> storage;
    alignas(64) std::atomic<std::size_t> taken{0};
};

} // namespace lumbrine
