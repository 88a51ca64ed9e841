#include "blackbox/ring_writer.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace lumbrine::blackbox {

namespace {

// A record as it is put together on the stack, but for its checksum and position.
struct Draft {
    std::array<std::uint64_t, (recordHeaderSize + largestPayload) / wordSize> words;
    std::size_t payload = 0;

    void add(ByteView part) {
        const std::size_t size = std::min(part.size(), largestPayload - payload);
        if (size == 0) return;
        std::memcpy(reinterpret_cast<std::uint8_t*>(words.data()) + recordHeaderSize + payload, part.data(), size);
        payload += size;
    }
};

// Another writer that stood still for a whole round may store to the same word: then neither record is whole, but the
// program is not undefined.
void store(std::uint64_t& place, std::uint64_t word) {
    __atomic_store_n(&place, word, __ATOMIC_RELAXED);
}

} // namespace

RingWriter::RingWriter(std::span<std::uint64_t> words, std::uint64_t itsSalt, std::uint64_t position)
    : ring(words), capacity(words.size_bytes()), salt(itsSalt), next(position) {}

void RingWriter::write(Stamp stamp, Kind kind, std::uint8_t channel, std::initializer_list<ByteView> payload) noexcept {
    Draft draft;
    for (const ByteView part : payload)
        draft.add(part);
    const std::size_t size = paddedSize(draft.payload);
    const std::size_t count = size / wordSize;
    if (draft.payload % wordSize != 0) {
        auto* bytes = reinterpret_cast<std::uint8_t*>(draft.words.data()) + recordHeaderSize + draft.payload;
        std::memset(bytes, 0, size - recordHeaderSize - draft.payload);
    }
    draft.words[2] = static_cast<std::uint64_t>(stamp.time);
    draft.words[3] = static_cast<std::uint64_t>(draft.payload) | static_cast<std::uint64_t>(kind) << 16 |
                     static_cast<std::uint64_t>(channel) << 24 | static_cast<std::uint64_t>(stamp.thread) << 32;

    // A place across the end of the ring stays empty, and the record takes the next one.
    std::uint64_t position = 0;
    std::size_t offset = 0;
    do {
        position = next.fetch_add(size, std::memory_order_relaxed);
        offset = position % capacity;
    } while (offset + size > capacity);
    draft.words[1] = position;

    Checksum sum(salt);
    std::uint64_t* const place = &ring[offset / wordSize];
    for (std::size_t i = 1; i < count; ++i) {
        sum.add(draft.words[i]);
        store(place[i], draft.words[i]);
    }
    __atomic_store_n(place, sum.value(), __ATOMIC_RELEASE);
}

} // namespace lumbrine::blackbox
