#include "blackbox/testing/memory_ring.h"

#include <algorithm>

namespace lumbrine::blackbox {
namespace {

struct Written {
    Bytes file;
    std::vector<std::string> texts;
    std::vector<std::size_t> ends; // of the records, in the file
};

Written somethingWritten() {
    MemoryRing ring;
    Written written;
    for (int i = 0; i < 20; ++i) {
        written.texts.push_back("line " + std::to_string(i) + std::string(static_cast<std::size_t>(i * 3), '-'));
        ring.log(written.texts.back());
        written.ends.push_back(headerSize + ring.writer.position());
    }
    written.file = ring.bytes();
    return written;
}

TEST(RingDamage, AFileCutAnywhereIsReadUpToThere) {
    const Written written = somethingWritten();
    for (std::size_t size = headerSize; size <= written.ends.back() + 8; ++size) {
        const auto whole = std::ranges::upper_bound(written.ends, size) - written.ends.begin();
        const std::vector<std::string> expected(written.texts.begin(), written.texts.begin() + whole);
        ASSERT_EQ(textsOf(ByteView(written.file).first(size)), expected) << size;
    }
}

TEST(RingDamage, AWrongByteCostsTheRecordThatItIsInAndNoOther) {
    const Written written = somethingWritten();
    for (std::size_t i = headerSize; i < written.ends.back(); ++i) {
        Bytes file = written.file;
        file[i] ^= 0x40;
        std::vector<std::string> expected = written.texts;
        expected.erase(expected.begin() + (std::ranges::upper_bound(written.ends, i) - written.ends.begin()));
        ASSERT_EQ(textsOf(file), expected) << i;
    }
}

// A program may end at any store: words are stored in their order, but for the checksum, which is the last.
TEST(RingDamage, AProgramThatEndsInTheMiddleOfARecordLosesThatRecordAlone) {
    MemoryRing ring;
    ring.log("whole");
    const Bytes before = ring.bytes();
    const std::size_t begin = headerSize + ring.writer.position();
    ring.log("half of this line is there, and nothing else");
    const Bytes after = ring.bytes();
    const std::size_t end = headerSize + ring.writer.position();
    for (std::size_t stored = begin + wordSize; stored <= end; stored += wordSize) {
        Bytes file = before;
        std::copy(after.begin() + static_cast<std::ptrdiff_t>(begin + wordSize),
                  after.begin() + static_cast<std::ptrdiff_t>(stored),
                  file.begin() + static_cast<std::ptrdiff_t>(begin + wordSize));
        ASSERT_EQ(textsOf(file), std::vector<std::string>{"whole"}) << stored;
    }
}

TEST(RingDamage, WhatIsNoRecordingIsNone) {
    EXPECT_FALSE(readRing({}));
    EXPECT_FALSE(readRing(Bytes(1, 0)));
    EXPECT_FALSE(readRing(Bytes(headerSize + leastRing, 0)));
    EXPECT_FALSE(readRing(Bytes(headerSize + leastRing, 0xFF)));
}

} // namespace
} // namespace lumbrine::blackbox
