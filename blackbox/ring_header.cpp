#include "blackbox/ring_header.h"

#include "blackbox/format.h"

#include <cstring>

namespace lumbrine::blackbox {

namespace {

constexpr std::size_t fields = 4; // magic, version, capacity, salt; the checksum follows

std::uint64_t checksumOf(std::span<const std::uint64_t> words) {
    Checksum sum(0);
    for (const std::uint64_t word : words)
        sum.add(word);
    return sum.value();
}

} // namespace

void writeHeader(const RingHeader& header, std::span<std::uint64_t> page) {
    std::ranges::fill(page, 0);
    page[0] = magic;
    page[1] = version;
    page[2] = header.capacity;
    page[3] = header.salt;
    page[fields] = checksumOf(page.first(fields));
}

std::optional<RingHeader> readHeader(ByteView file) {
    std::array<std::uint64_t, fields + 1> words{};
    if (file.size() < headerSize) return std::nullopt;
    std::memcpy(words.data(), file.data(), sizeof words);
    if (words[0] != magic || words[1] != version) return std::nullopt;
    if (words[fields] != checksumOf(std::span(words).first(fields))) return std::nullopt;
    if (words[2] < leastRing || words[2] > largestRing || words[2] % headerSize != 0) return std::nullopt;
    return RingHeader{static_cast<std::size_t>(words[2]), words[3]};
}

} // namespace lumbrine::blackbox
