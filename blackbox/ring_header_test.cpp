#include "blackbox/format.h"
#include "blackbox/ring_header.h"

namespace lumbrine::blackbox {
namespace {

Bytes pageOf(const RingHeader& header) {
    std::vector<std::uint64_t> words(headerSize / wordSize, ~std::uint64_t{0});
    writeHeader(header, words);
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(words.data());
    return {bytes, bytes + headerSize};
}

const RingHeader header{.capacity = leastRing, .salt = 0x1122334455667788};

TEST(RingHeader, IsWhatThePageSays) {
    const Bytes page = pageOf(header);
    EXPECT_EQ(Bytes(page.begin(), page.begin() + 32), (Bytes{'B',  'L',  'A',  'C',  'K',  'B',  'O',  'X', // magic
                                                             1,    0,    0,    0,    0,    0,    0,    0,   // version
                                                             0,    0,    1,    0,    0,    0,    0,    0,   // 64 KiB
                                                             0x88, 0x77, 0x66, 0x55, 0x44, 0x33, 0x22, 0x11})); // salt
    EXPECT_EQ(readHeader(page), header);
}

TEST(RingHeader, IsAbsentWhenAnyOfItsBytesIsWrong) {
    for (std::size_t i = 0; i < 40; ++i) {
        Bytes page = pageOf(header);
        page[i] ^= 0x10;
        EXPECT_FALSE(readHeader(page)) << i;
    }
}

TEST(RingHeader, IsAbsentWhenTheFileIsCutInIt) {
    const Bytes page = pageOf(header);
    for (std::size_t size = 0; size < headerSize; ++size)
        EXPECT_FALSE(readHeader(ByteView(page).first(size))) << size;
}

TEST(RingHeader, IsAbsentForARingOfNoPossibleSize) {
    for (const std::size_t capacity : {std::size_t{0}, leastRing - headerSize, leastRing + 8, largestRing + headerSize})
        EXPECT_FALSE(readHeader(pageOf({.capacity = capacity, .salt = 1}))) << capacity;
}

} // namespace
} // namespace lumbrine::blackbox
