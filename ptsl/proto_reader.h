// Protocol-buffer decoding: reads the fields of a message one after another.
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

// Owns the whole message. Every failure is a malformedResponse in the user's language. Do not use a reader after a
// failure: its position is unspecified.
class ProtoReader {
public:
    struct Field {
        std::int64_t field;
        std::uint8_t wireType;
        Bytes bytes;          // the value of a length-delimited field, else empty
        std::uint64_t varint; // the value of a varint field, else 0

        bool operator==(const Field&) const = default;
    };

    ProtoReader(Bytes bytes, Bilingual text) : bytes(std::move(bytes)), text(text) {}

    // Reads one field; absent at the end of the message. Of 32-bit and 64-bit fields the value is skipped. Groups are
    // not supported and fail.
    std::expected<std::optional<Field>, PTSLError> next();

    // Reads one varint of up to ten bytes. Bits beyond the 64th are ignored.
    std::expected<std::uint64_t, PTSLError> varint();

private:
    std::unexpected<PTSLError> malformed(std::string_view english, std::string_view japanese) const;
    std::size_t remaining() const { return bytes.size() - static_cast<std::size_t>(position); }

    Bytes bytes;
    std::int64_t position = 0;
    Bilingual text;
};

} // namespace lumbrine
