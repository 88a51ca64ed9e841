// MIDI events on their way from one thread to another, without a lock and without allocation: how a realtime thread
// hands over and takes what it must not wait for.
#pragma once

#include "base/bytes.h"

#include <atomic>
#include <cstddef>
#include <memory>

namespace lumbrine {

// One thread puts events in and one thread takes them out, at the same time; both ends never wait. Events come out
// whole and in order. Threads that share an end take turns by a lock of their own.
class EventRing {
public:
    // An event takes its length and four bytes more of the capacity.
    explicit EventRing(std::size_t capacityInBytes);

    // False, and nothing is put in, when the event is empty or what is free cannot hold it whole.
    bool push(ByteView event);

    // How long the oldest event is; 0 when there is none.
    std::size_t nextSize() const;

    // Takes the oldest event out and copies it; `into` has exactly its size. Only while there is one.
    void pop(std::span<std::uint8_t> into);

    // Takes the oldest event out unread. Only while there is one.
    void drop();

    // Forgets all events; neither end may be at work.
    void clear();

private:
    void copyIn(std::size_t position, ByteView bytes);
    void copyOut(std::size_t position, std::span<std::uint8_t> bytes) const;

    // Bytes ever put in and ever taken out; they wrap around with the type. On two cache lines, since each is written
    // by one end and read by the other.
    alignas(64) std::atomic<std::size_t> written{0};
    const std::size_t capacity;
    const std::unique_ptr<std::uint8_t[]> storage;
    alignas(64) std::atomic<std::size_t> taken{0};
};

} // namespace lumbrine
