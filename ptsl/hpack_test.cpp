#include "ptsl/hpack.h"

#include <string>

namespace lumbrine {
namespace {

Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

Bytes firstBytes(const Bytes& bytes, std::ptrdiff_t count) {
    return {bytes.begin(), bytes.begin() + count};
}

TEST(HPACK, WritesShortStringsAfterOneByteOfLength) {
    EXPECT_EQ(hpackString(""), (Bytes{0x00}));
    EXPECT_EQ(hpackString("te"), (Bytes{0x02, 't', 'e'}));
    const Bytes longest = hpackString(std::string(126, 'x'));
    EXPECT_EQ(firstBytes(longest, 2), (Bytes{0x7E, 'x'}));
    EXPECT_EQ(longest.size(), 127u);
}

TEST(HPACK, ContinuesLongLengthsAfterAFullPrefix) {
    EXPECT_EQ(firstBytes(hpackString(std::string(127, 'x')), 3), (Bytes{0x7F, 0x00, 'x'}));
    EXPECT_EQ(firstBytes(hpackString(std::string(128, 'x')), 3), (Bytes{0x7F, 0x01, 'x'}));
    EXPECT_EQ(firstBytes(hpackString(std::string(254, 'x')), 3), (Bytes{0x7F, 0x7F, 'x'}));
    EXPECT_EQ(firstBytes(hpackString(std::string(255, 'x')), 4), (Bytes{0x7F, 0x80, 0x01, 'x'}));
    EXPECT_EQ(hpackString(std::string(127, 'x')).size(), 129u);
    // RFC 7541, C.1.2 with a prefix of 7 bits: 1337 - 127 = 1210.
    EXPECT_EQ(firstBytes(hpackString(std::string(1337, 'x')), 4), (Bytes{0x7F, 0xBA, 0x09, 'x'}));
}

TEST(HPACK, CountsBytesAndNotCharacters) {
    EXPECT_EQ(hpackString("あ"), (Bytes{0x03, 0xE3, 0x81, 0x82}));
}

TEST(HPACK, WritesTheHeadersOfACall) {
    Bytes expected{0x83,  // :method: POST
                   0x86}; // :scheme: http
    const auto append = [&](const Bytes& bytes) { expected.insert(expected.end(), bytes.begin(), bytes.end()); };
    append({0x04, 0x1A}); // :path, 26 bytes
    append(bytesOf("/ptsl.PTSL/SendGrpcRequest"));
    append({0x01, 0x0F}); // :authority, 15 bytes
    append(bytesOf("127.0.0.1:31416"));
    append({0x0F, 0x10, 0x10}); // content-type (15 + 16 = entry 31), 16 bytes
    append(bytesOf("application/grpc"));
    append({0x00, 0x02, 't', 'e', 0x08}); // a new name, 8 bytes of value
    append(bytesOf("trailers"));
    EXPECT_EQ(headerBlock("/ptsl.PTSL/SendGrpcRequest", "127.0.0.1:31416"), expected);
}

} // namespace
} // namespace lumbrine
