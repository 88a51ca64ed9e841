// Protocol-buffer decoding: the fields of a message one after another.
#pragma once

#include "base/bilingual.h"
#include "base/bytes.h"
#include "ptsl/ptsl_error.h"

#include <cstdint>
#include <expected>
#include <optional>

namespace lumbrine {

namespace proto {
inline constexpr std::uint8_t varintType = 0;
inline constexpr std::uint8_t lengthDelimitedType = 2;
} // namespace proto

// Owns the whole message. Every failure is a malformedResponse in the user's language; after one the position is
// unspecified and the reader is of no more use.
class ProtoReader {
public:
    struct Field {
        std::int64_t field;
        std::uint8_t wireType;
        Bytes bytes;          // of a length-delimited field, else empty
        std::uint64_t varint; // of a varint field, else 0

        bool operator==(const Field&) const = default;
    };

    ProtoReader(Bytes message, Bilingual bilingual) : bytes(std::move(message)), text(bilingual) {}

    // Reads one field; absent at the end of the message. The values of 32-bit and 64-bit fields are skipped. Groups are
    // not supported.
    std::expected<std::optional<Field>, PTSLError> next();

    // Reads one varint. Of a tenth byte only the lowest bit counts.
    std::expected<std::uint64_t, PTSLError> varint();

private:
    std::unexpected<PTSLError> malformed(std::string_view english, std::string_view japanese) const;
    std::size_t remaining() const { return bytes.size() - static_cast<std::size_t>(position); }

    Bytes bytes;
    std::int64_t position = 0;
    Bilingual text;
};

} // namespace lumbrine
