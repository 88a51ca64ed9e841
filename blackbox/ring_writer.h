// Writes records into a ring of words: into a mapped file when the receiver runs, into plain memory in tests.
#pragma once

#include "base/bytes.h"
#include "blackbox/format.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>

namespace lumbrine::blackbox {

// Any thread may write at any time. Nobody waits: a writer takes a place by one addition, stores the words of the
// record there and its checksum last. A program that ends in between leaves a place without a whole record, which a
// reader passes over. So does a writer that stands still while the others go once round the ring.
class RingWriter {
public:
    // The words outlive the writer, and are as many as a header's capacity may be. A ring that has records already is
    // continued at `position` (RingReading::end).
    RingWriter(std::span<std::uint64_t> words, std::uint64_t salt, std::uint64_t position);

    RingWriter(const RingWriter&) = delete;
    RingWriter& operator=(const RingWriter&) = delete;

    struct Stamp {
        std::int64_t time; // nanoseconds of the runtime's clock
        std::uint32_t thread;
    };

    // Writes one record. Its payload is the parts, one after the other; what is longer than largestPayload is cut.
    // No lock, no allocation, no system call.
    void write(Stamp stamp, Kind kind, std::uint8_t channel, std::initializer_list<ByteView> payload) noexcept;

    // Where the next record will be: grows with every record, and never shrinks.
    std::uint64_t position() const { return next.load(std::memory_order_relaxed); }

private:
    const std::span<std::uint64_t> ring;
    const std::size_t capacity; // bytes
    const std::uint64_t salt;
    std::atomic<std::uint64_t> next;
};

} // namespace lumbrine::blackbox
