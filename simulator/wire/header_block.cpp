#include "simulator/wire/header_block.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace lumbrine::wire {

namespace {

struct StaticEntry {
    std::uint64_t index;
    std::string_view name;
    std::string_view value;
};

constexpr std::array staticEntries{
    StaticEntry{1, ":authority", ""},    StaticEntry{2, ":method", "GET"},
    StaticEntry{3, ":method", "POST"},   StaticEntry{4, ":path", "/"},
    StaticEntry{5, ":path", "/index"},   StaticEntry{6, ":scheme", "http"},
    StaticEntry{7, ":scheme", "https"},  StaticEntry{16, "accept-encoding", "gzip, deflate"},
    StaticEntry{31, "content-type", ""}, StaticEntry{58, "user-agent", ""},
};

const StaticEntry* entryAt(std::uint64_t index) {
    const auto* const found = std::ranges::find(staticEntries, index, &StaticEntry::index);
    return found == staticEntries.end() ? nullptr : found;
}

// Reads a block from front to back; every read is absent when the bytes do not hold what is asked for.
class BlockReader {
public:
    explicit BlockReader(ByteView block) : rest(block) {}

    bool atEnd() const { return rest.empty(); }
    std::uint8_t first() const { return rest.front(); }

    // The low `prefixBits` of the first byte, and what follows when they are all set.
    std::optional<std::uint64_t> integer(int prefixBits) {
        constexpr int mostShift = 28;
        if (rest.empty()) return std::nullopt;
        const std::uint64_t mask = (1U << prefixBits) - 1;
        std::uint64_t value = take() & mask;
        if (value < mask) return value;
        for (int shift = 0; shift <= mostShift; shift += 7) {
            if (rest.empty()) return std::nullopt;
            const std::uint8_t byte = take();
            value += std::uint64_t{byte & 0x7FU} << shift;
            if ((byte & 0x80) == 0) return value;
        }
        return std::nullopt;
    }

    std::optional<std::string> text() {
        constexpr std::uint8_t huffman = 0x80;
        if (rest.empty() || (rest.front() & huffman) != 0) return std::nullopt;
        const auto length = integer(7);
        if (!length || *length > rest.size()) return std::nullopt;
        const ByteView bytes = rest.first(static_cast<std::size_t>(*length));
        rest = rest.subspan(bytes.size());
        return std::string(bytes.begin(), bytes.end());
    }

private:
    std::uint8_t take() {
        const std::uint8_t byte = rest.front();
        rest = rest.subspan(1);
        return byte;
    }

    ByteView rest;
};

std::optional<Header> indexedField(BlockReader& reader) {
    const auto index = reader.integer(7);
    const StaticEntry* const entry = index ? entryAt(*index) : nullptr;
    if (entry == nullptr || entry->value.empty()) return std::nullopt;
    return Header{std::string(entry->name), std::string(entry->value)};
}

std::optional<Header> literalField(BlockReader& reader, int prefixBits) {
    const auto index = reader.integer(prefixBits);
    if (!index) return std::nullopt;
    std::optional<std::string> name;
    if (*index == 0) {
        name = reader.text();
    } else if (const StaticEntry* const entry = entryAt(*index)) {
        name = std::string(entry->name);
    }
    auto value = name ? reader.text() : std::nullopt;
    if (!value) return std::nullopt;
    return Header{std::move(*name), std::move(*value)};
}

void appendText(Bytes& block, std::string_view text) {
    block.push_back(static_cast<std::uint8_t>(text.size())); // all of ours are shorter than 127
    block.insert(block.end(), text.begin(), text.end());
}

void appendLiteral(Bytes& block, std::string_view name, std::string_view value) {
    block.push_back(0x00); // without indexing, with a name of its own
    appendText(block, name);
    appendText(block, value);
}

} // namespace

std::optional<std::vector<Header>> decodeHeaders(ByteView block) {
    std::vector<Header> headers;
    BlockReader reader(block);
    while (!reader.atEnd()) {
        const std::uint8_t first = reader.first();
        if ((first & 0xE0) == 0x20) { // the size of the dynamic table
            if (!reader.integer(5)) return std::nullopt;
            continue;
        }
        std::optional<Header> header;
        if ((first & 0x80) != 0) {
            header = indexedField(reader);
        } else {
            const bool indexing = (first & 0x40) != 0;
            header = literalField(reader, indexing ? 6 : 4);
        }
        if (!header) return std::nullopt;
        headers.push_back(std::move(*header));
    }
    return headers;
}

Bytes responseHeaders() {
    Bytes block{0x88,        // :status 200
                0x0F, 0x10}; // content-type
    appendText(block, "application/grpc");
    return block;
}

Bytes trailers(int grpcStatus, std::string_view message) {
    Bytes block;
    appendLiteral(block, "grpc-status", std::to_string(grpcStatus));
    if (!message.empty()) appendLiteral(block, "grpc-message", message);
    return block;
}

} // namespace lumbrine::wire
