#include "blackbox/testing/memory_ring.h"

namespace lumbrine::blackbox {
namespace {

TEST(Ring, HasWhatWasWritten) {
    MemoryRing ring;
    const std::array<std::uint8_t, 3> one{0xB0, 0x00, 0x7F};
    ring.writer.write({1000, 5}, Kind::midiIn, 1, {one});
    ring.writer.write({-2000, 6}, Kind::log, 0, {textBytes("two"), textBytes(" parts")});
    const Bytes file = ring.bytes();
    const auto reading = readRing(file);
    ASSERT_TRUE(reading);
    ASSERT_EQ(reading->records.size(), 2U);
    const Record& first = reading->records[0];
    EXPECT_EQ(first.position, 0U);
    EXPECT_EQ(first.time, 1000);
    EXPECT_EQ(first.thread, 5U);
    EXPECT_EQ(first.kind, Kind::midiIn);
    EXPECT_EQ(first.channel, 1);
    EXPECT_EQ(Bytes(first.payload.begin(), first.payload.end()), (Bytes{0xB0, 0x00, 0x7F}));
    EXPECT_EQ(reading->records[1].position, 40U);
    EXPECT_EQ(reading->records[1].time, -2000);
    EXPECT_EQ(textOf(reading->records[1]), "two parts");
    EXPECT_EQ(reading->end, 40U + 48U);
    EXPECT_EQ(reading->end, ring.writer.position());
}

TEST(Ring, HasTheBytesThatItsPageShows) {
    MemoryRing ring;
    const std::array<std::uint8_t, 3> packet{0xB0, 0x00, 0x7F};
    ring.writer.write({0x0102030405060708, 0x0A0B0C0D}, Kind::midiIn, 1, {packet});
    const Bytes file = ring.bytes();
    const auto begin = file.begin() + headerSize;
    EXPECT_EQ(Bytes(begin, begin + 40), (Bytes{
                                            0xFF, 0x32, 0x3F, 0x98, 0x06, 0x3B, 0x43, 0xBA, // checksum
                                            0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, // position
                                            0x08, 0x07, 0x06, 0x05, 0x04, 0x03, 0x02, 0x01, // time
                                            0x03, 0x00,                                     // length
                                            0x07, 0x01,                                     // kind, channel
                                            0x0D, 0x0C, 0x0B, 0x0A,                         // thread
                                            0xB0, 0x00, 0x7F, 0x00, 0x00, 0x00, 0x00, 0x00, // payload, padding
                                        }));
}

TEST(Ring, IsEmptyAtFirst) {
    const MemoryRing ring;
    const Bytes file = ring.bytes();
    const auto reading = readRing(file);
    ASSERT_TRUE(reading);
    EXPECT_TRUE(reading->records.empty());
    EXPECT_EQ(reading->end, 0U);
}

TEST(Ring, CutsWhatIsLongerThanARecordMayBe) {
    MemoryRing ring;
    const Bytes half(largestPayload - 1, 'x');
    ring.writer.write({}, Kind::streamIn, 0, {half, half, half});
    ring.log("next");
    const Bytes file = ring.bytes();
    const auto reading = readRing(file);
    ASSERT_EQ(reading->records.size(), 2U);
    EXPECT_EQ(reading->records[0].payload.size(), largestPayload);
    EXPECT_EQ(textOf(reading->records[1]), "next");
}

// Records of every size, several times round the ring: what is there is an unbroken row up to the newest, and not much
// shorter than the ring.
TEST(Ring, KeepsTheNewestRecordsWithoutAGap) {
    MemoryRing ring;
    int number = 0;
    for (int check = 0; check < 60; ++check) {
        for (int i = 0; i < 97; ++i) {
            ring.log(std::to_string(number) + std::string(static_cast<std::size_t>(number % 331), '.'));
            ++number;
        }
        const std::vector<std::string> texts = textsOf(ring.bytes());
        ASSERT_FALSE(texts.empty());
        std::size_t size = 0;
        int expected = number - static_cast<int>(texts.size());
        for (const std::string& text : texts) {
            ASSERT_EQ(std::stoi(text), expected++);
            size += paddedSize(text.size());
        }
        if (check > 10) {
            EXPECT_GT(size, leastRing - 4 * largestPayload);
        }
    }
}

TEST(Ring, GoesOnWhereAnEarlierProgramEnded) {
    std::vector<std::uint64_t> words(leastRing / wordSize);
    std::vector<std::uint64_t> page(headerSize / wordSize);
    writeHeader({leastRing, 9}, page);
    const auto file = [&] {
        Bytes bytes;
        append(bytes, {reinterpret_cast<const std::uint8_t*>(page.data()), headerSize});
        append(bytes, {reinterpret_cast<const std::uint8_t*>(words.data()), leastRing});
        return bytes;
    };
    std::vector<std::string> expected;
    for (int program = 0; program < 5; ++program) {
        const Bytes before = file();
        RingWriter writer(words, 9, readRing(before)->end);
        for (int line = 0; line < 3; ++line) {
            expected.push_back(std::to_string(program) + "/" + std::to_string(line));
            writer.write({}, Kind::log, 0, {textBytes(expected.back())});
        }
    }
    EXPECT_EQ(textsOf(file()), expected);
}

// What a stranger sends is in the recording, and may look like a record. It is none: its sum needs the file's salt.
TEST(Ring, TakesNoRecordForOneThatLiesInsideAnother) {
    MemoryRing forger;
    forger.log("a forged line");
    const Bytes forged = forger.bytes();
    std::vector<std::uint64_t> words(leastRing / wordSize);
    RingWriter writer(words, MemoryRing::salt + 1, 0);
    writer.write({}, Kind::datagramIn, 0, {ByteView(forged).subspan(headerSize, 64)});
    words[0] ^= 1; // the record around it is torn
    std::vector<std::uint64_t> page(headerSize / wordSize);
    writeHeader({leastRing, MemoryRing::salt + 1}, page);
    Bytes file;
    append(file, {reinterpret_cast<const std::uint8_t*>(page.data()), headerSize});
    append(file, {reinterpret_cast<const std::uint8_t*>(words.data()), leastRing});
    EXPECT_EQ(textsOf(file), std::vector<std::string>{});
}

} // namespace
} // namespace lumbrine::blackbox
