#include "ptsl/proto_writer.h"

#include <limits>

namespace lumbrine {
namespace {

TEST(ProtoWriter, WritesSevenBitsInEachByteLowestFirst) {
    EXPECT_EQ(ProtoWriter::varint(0), (Bytes{0x00}));
    EXPECT_EQ(ProtoWriter::varint(16), (Bytes{0x10}));
    EXPECT_EQ(ProtoWriter::varint(127), (Bytes{0x7F}));
    EXPECT_EQ(ProtoWriter::varint(128), (Bytes{0x80, 0x01}));
    EXPECT_EQ(ProtoWriter::varint(300), (Bytes{0xAC, 0x02}));
    EXPECT_EQ(ProtoWriter::varint(16'384), (Bytes{0x80, 0x80, 0x01}));
}

TEST(ProtoWriter, WritesTheLargestNumberInTenBytes) {
    EXPECT_EQ(ProtoWriter::varint(std::numeric_limits<std::uint64_t>::max()),
              (Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x01}));
}

} // namespace
} // namespace lumbrine
