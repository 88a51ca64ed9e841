#include "blackbox/ring_reader.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace lumbrine::blackbox {

namespace {

constexpr std::size_t headerWords = recordHeaderSize / wordSize;

std::uint64_t wordAt(ByteView bytes, std::size_t offset) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data() + offset, wordSize);
    return word;
}

// The ring as far as the file has it.
class Scan {
public:
    Scan(const RingHeader& itsHeader, ByteView bytes) : header(itsHeader), ring(bytes) {}

    std::vector<Record> records() const {
        std::vector<Record> found;
        for (std::size_t offset = 0; offset + recordHeaderSize <= ring.size();) {
            const auto record = recordAt(offset);
            if (record) found.push_back(*record);
            offset += record ? paddedSize(record->payload.size()) : wordSize;
        }
        return found;
    }

private:
    std::optional<Record> recordAt(std::size_t offset) const {
        std::array<std::uint64_t, headerWords> head{};
        std::memcpy(head.data(), ring.data() + offset, recordHeaderSize);
        const std::uint64_t position = head[1];
        const auto length = static_cast<std::size_t>(head[3] & 0xFFFF);
        const auto kind = static_cast<std::uint8_t>(head[3] >> 16);
        if (position % header.capacity != offset || length > largestPayload) return std::nullopt;
        const std::size_t size = paddedSize(length);
        if (size > ring.size() - offset) return std::nullopt;
        Checksum sum(header.salt);
        for (std::size_t i = wordSize; i < size; i += wordSize)
            sum.add(wordAt(ring, offset + i));
        if (sum.value() != head[0]) return std::nullopt;
        return Record{.position = position,
                      .time = static_cast<std::int64_t>(head[2]),
                      .thread = static_cast<std::uint32_t>(head[3] >> 32),
                      .kind = static_cast<Kind>(kind),
                      .channel = static_cast<std::uint8_t>(head[3] >> 24),
                      .payload = ring.subspan(offset + recordHeaderSize, length)};
    }

    const RingHeader& header;
    const ByteView ring;
};

std::uint64_t endOf(const Record& record) {
    return record.position + paddedSize(record.payload.size());
}

// What is left of the round before in a place that the newest round took and did not fill.
bool isLeftOver(const Record& record, const RingReading& reading) {
    return reading.end > reading.header.capacity && record.position < reading.end - reading.header.capacity;
}

} // namespace

std::optional<RingReading> readRing(ByteView file) {
    const auto header = readHeader(file);
    if (!header) return std::nullopt;
    RingReading reading{*header, {}};
    const ByteView ring = file.subspan(headerSize);
    reading.records = Scan(reading.header, ring.first(std::min(ring.size(), header->capacity))).records();
    std::ranges::sort(reading.records, {}, &Record::position);
    if (reading.records.empty()) return reading;
    reading.end = endOf(reading.records.back());
    std::erase_if(reading.records, [&](const Record& record) { return isLeftOver(record, reading); });
    return reading;
}

} // namespace lumbrine::blackbox
