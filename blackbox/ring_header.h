// The header of a recording's file.
#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace lumbrine::blackbox {

struct RingHeader {
    std::size_t capacity = 0; // bytes of the ring, a multiple of headerSize
    std::uint64_t salt = 0; // begins every checksum: who cannot read the file cannot make bytes that look like a record

    bool operator==(const RingHeader&) const = default;
};

// `page` has headerSize bytes.
void writeHeader(const RingHeader& header, std::span<std::uint64_t> page);

// Absent when the file does not begin with a whole header of this version.
std::optional<RingHeader> readHeader(ByteView file);

} // namespace lumbrine::blackbox
