#include "ptsl/hpack.h"

#include "ptsl/proto_writer.h"

namespace lumbrine {

namespace {

constexpr std::size_t longLength = 127; // the largest 7-bit prefix; from here on the integer continues

} // namespace

Bytes hpackString(std::string_view text) {
    Bytes bytes;
    if (text.size() < longLength) {
        bytes.push_back(static_cast<std::uint8_t>(text.size()));
    } else {
        bytes.push_back(longLength);
        // RFC 7541, section 5.1: the rest of an HPACK integer has the same encoding as a protocol-buffer varint.
        append(bytes, ProtoWriter::varint(text.size() - longLength));
    }
    bytes.insert(bytes.end(), text.begin(), text.end());
    return bytes;
}

Bytes headerBlock(std::string_view path, std::string_view authority) {
    // Entry numbers are those of the static table (RFC 7541, appendix A). Literals are not added to a dynamic table.
    Bytes block{0x83, 0x86}; // indexed: ":method: POST", ":scheme: http"
    block.push_back(0x04);   // literal, name of entry 4: ":path"
    append(block, hpackString(path));
    block.push_back(0x01); // literal, name of entry 1: ":authority"
    append(block, hpackString(authority));
    append(block, Bytes{0x0F, 0x10}); // literal, name of entry 31: "content-type"
    append(block, hpackString("application/grpc"));
    block.push_back(0x00); // literal, name in full
    append(block, hpackString("te"));
    append(block, hpackString("trailers"));
    return block;
}

} // namespace lumbrine
