#include "ptsl/proto_reader.h"

namespace lumbrine {

std::unexpected<PTSLError> ProtoReader::malformed(std::string_view english, std::string_view japanese) const {
    return std::unexpected(PTSLError::malformedResponse(text(english, japanese)));
}

std::expected<std::uint64_t, PTSLError> ProtoReader::varint() {
    std::uint64_t value = 0;
    for (int shift = 0; shift <= 63; shift += 7) {
        if (remaining() == 0) return malformed("varint truncated", "varint が途中で切れた");
        const std::uint8_t byte = bytes[static_cast<std::size_t>(position++)];
        value |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
        if ((byte & 0x80) == 0) return value;
    }
    return malformed("varint too long", "varint が長すぎる");
}

std::expected<std::optional<ProtoReader::Field>, PTSLError> ProtoReader::next() {
    if (remaining() == 0) return std::nullopt;
    const auto tag = varint();
    if (!tag) return std::unexpected(tag.error());
    Field field{static_cast<std::int64_t>(*tag >> 3), static_cast<std::uint8_t>(*tag & 7), {}, 0};

    switch (field.wireType) {
    case proto::varintType: {
        const auto value = varint();
        if (!value) return std::unexpected(value.error());
        field.varint = *value;
        break;
    }
    case 1: // 64 bits
        if (remaining() < 8) return malformed("fixed64 truncated", "fixed64 が切れた");
        position += 8;
        break;
    case proto::lengthDelimitedType: {
        const auto length = varint();
        if (!length) return std::unexpected(length.error());
        if (*length > remaining()) return malformed("length exceeds available bytes", "長さが実体を超えている");
        const auto begin = bytes.begin() + position;
        position += static_cast<std::int64_t>(*length);
        field.bytes.assign(begin, bytes.begin() + position);
        break;
    }
    case 5: // 32 bits
        if (remaining() < 4) return malformed("fixed32 truncated", "fixed32 が切れた");
        position += 4;
        break;
    default: {
        const std::string number = std::to_string(field.wireType);
        return malformed("unknown wire type " + number, "未知の wire type " + number);
    }
    }
    return field;
}

} // namespace lumbrine
