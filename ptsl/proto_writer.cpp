#include "ptsl/proto_writer.h"

namespace lumbrine {

Bytes ProtoWriter::varint(std::uint64_t value) {
    Bytes bytes;
    for (; value > 0x7F; value >>= 7)
        bytes.push_back(static_cast<std::uint8_t>(value | 0x80));
    bytes.push_back(static_cast<std::uint8_t>(value));
    return bytes;
}

} // namespace lumbrine
