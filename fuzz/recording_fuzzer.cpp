// The input is the ring of a recording, behind a whole header. Records must lie inside it, in the order of their
// positions, and not inside each other; what a writer adds behind them must be found as well.
#include "blackbox/ring_reader.h"
#include "blackbox/ring_writer.h"
#include "fuzz/require.h"

#include <algorithm>

namespace {

using namespace lumbrine;
using namespace lumbrine::blackbox;

constexpr std::uint64_t salt = 0;

void requireOrder(const RingReading& reading, ByteView file) {
    const Record* before = nullptr;
    for (const Record& record : reading.records) {
        require(record.payload.size() <= largestPayload);
        require(record.payload.data() >= file.data() + headerSize);
        require(record.payload.data() + record.payload.size() <= file.data() + file.size());
        if (before != nullptr) require(before->position + paddedSize(before->payload.size()) <= record.position);
        before = &record;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::uint64_t> words((headerSize + leastRing) / wordSize);
    writeHeader({.capacity = leastRing, .salt = salt}, std::span(words).first(headerSize / wordSize));
    const std::span ring = std::span(words).subspan(headerSize / wordSize);
    std::copy_n(data, std::min(size, ring.size_bytes()), reinterpret_cast<std::uint8_t*>(ring.data()));

    const ByteView file(reinterpret_cast<const std::uint8_t*>(words.data()), words.size() * wordSize);
    const auto reading = readRing(file);
    require(reading.has_value());
    requireOrder(*reading, file);
    readRing(file.first(headerSize + std::min(size, ring.size_bytes())));
    readRing({data, size});

    RingWriter writer(ring, salt, reading->end);
    writer.write({}, Kind::log, 0, {textBytes("added")});
    const auto again = readRing(file);
    require(again && !again->records.empty());
    if (reading->end < ~std::uint64_t{0} / 2) require(again->end == writer.position());
    return 0;
}
