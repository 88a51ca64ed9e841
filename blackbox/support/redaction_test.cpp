#include "blackbox/payload.h"
#include "blackbox/support/pseudonyms.h"
#include "blackbox/support/redaction.h"
#include "blackbox/testing/memory_ring.h"

namespace lumbrine::blackbox {
namespace {

Bytes operator+(Bytes begin, std::string_view text) {
    begin.insert(begin.end(), text.begin(), text.end());
    return begin;
}

struct RedactionTest : testing::Test {
    void datagram(const Bytes& message, std::uint8_t host = 7) {
        DatagramHead head;
        head.peer = {.host = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 192, 168, 1, host}, .port = 5000};
        ring.writer.write({}, Kind::datagramOut, 0, {bytesOf(head), message});
    }

    void log(std::string_view line) { ring.writer.write({}, Kind::log, 0, {textBytes(line)}); }

    // The payloads of the copy.
    std::vector<Bytes> copied() const {
        const Bytes copy = redacted(ring.bytes());
        std::vector<Bytes> payloads;
        for (const Record& record : readRing(copy)->records)
            payloads.emplace_back(record.payload.begin(), record.payload.end());
        return payloads;
    }

    static std::string text(const Bytes& payload, std::size_t begin = 0) {
        return {payload.begin() + static_cast<std::ptrdiff_t>(begin), payload.end()};
    }

    static bool hasAny(const std::vector<Bytes>& payloads, std::string_view word) {
        return std::ranges::any_of(payloads, [&](const Bytes& payload) { return text(payload).contains(word); });
    }

    MemoryRing ring;
};

TEST_F(RedactionTest, GivesANameTheSamePseudonymEverywhere) {
    datagram(Bytes{0x01, 0x18, 0x02} + "Lead Vox");
    datagram(Bytes{0x01, 0x10, 0x02} + "Kick");
    ring.writer.write({}, Kind::midiIn, 0, {Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x01} + "Kick\xF7"});
    log("mode of Lead Vox, not of Leader: read");
    const auto payloads = copied();
    EXPECT_FALSE(hasAny(payloads, "Lead Vox"));
    EXPECT_FALSE(hasAny(payloads, "Kick"));
    const std::string name = text(payloads[0], sizeof(DatagramHead) + 3);
    EXPECT_EQ(name.size(), 8U);
    EXPECT_EQ(name[4], ' ');
    EXPECT_EQ(text(payloads[3]), "mode of " + name + ", not of Leader: read");
    EXPECT_EQ(text(payloads[2]).substr(8, 4), text(payloads[1], sizeof(DatagramHead) + 3));
}

TEST_F(RedactionTest, BlanksCommentsAndKeepsTheRestOfARow) {
    Bytes row{0x01, 0x1B, 0x00, 0x04, 1, 0x20, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0};
    row.push_back(4);
    row = row + "Bass";
    row.push_back(6);
    row = row + "secret";
    datagram(row);
    const Bytes copy = copied().at(0);
    const ByteView kept = ByteView(copy).subspan(sizeof(DatagramHead));
    ASSERT_EQ(kept.size(), row.size());
    EXPECT_TRUE(std::ranges::equal(kept.first(17), ByteView(row).first(17))) << "the numbers and the name's length";
    EXPECT_FALSE(hasAny({copy}, "Bass"));
    EXPECT_EQ(text(copy, sizeof(DatagramHead) + 21), "\x06      ");
}

TEST_F(RedactionTest, RenamesInSealedMessagesAndClearsTheirSeals) {
    Bytes sealed = Bytes{0x01, 0x18, 0x02} + "Lead Vox";
    append(sealed, Bytes{0xFF, 0x5E, 0xA1, 0xA0, 0x00, 0x00, 0x08, 0x5F, 1, 2, 3, 4, 5, 6, 7, 8});
    datagram(sealed);
    const Bytes copy = copied().at(0);
    EXPECT_FALSE(hasAny({copy}, "Lead Vox"));
    EXPECT_TRUE(std::equal(copy.end() - 16, copy.end() - 8, sealed.end() - 16)) << "mark, key number and number";
    EXPECT_EQ(Bytes(copy.end() - 8, copy.end()), Bytes(8));
}

TEST_F(RedactionTest, ChangesAddressesAndKeepsPeersApart) {
    datagram({0x01, 0x7F}, 7);
    datagram({0x01, 0x7F}, 8);
    datagram({0x01, 0x7F}, 7);
    log("client 192.168.1.7:5000, [fe80::1c2:7]:5000 at 12:30, version 1.2.3");
    const auto payloads = copied();
    EXPECT_EQ(payloads[0], payloads[2]);
    EXPECT_NE(payloads[0], payloads[1]);
    EXPECT_EQ(payloads[0][12], 10);
    EXPECT_EQ(text(payloads[3]), "client 000.000.0.0:0000, [0000::000:0]:5000 at 12:30, version 1.2.3");
}

TEST_F(RedactionTest, LeavesNothingOfScriptsAndScreens) {
    ring.writer.write({}, Kind::streamIn, 3, {textBytes("{\"name\": \"Lead\"}")});
    ring.writer.write({}, Kind::screen, 2,
                      {bytesOf(ScreenHead{}), textBytes("AXTitle=\"Mix: Song\" AXRole=\"AXRow\" AXMain=-")});
    ring.writer.write({}, Kind::fact, 0, {textBytes("computer=Ann's Mac")});
    const auto payloads = copied();
    EXPECT_EQ(payloads[0], Bytes(16));
    EXPECT_EQ(text(payloads[1], sizeof(ScreenHead)), "AXTitle=\"xxx: xxxx\" AXRole=\"xxxxx\" AXMain=-");
    EXPECT_TRUE(text(payloads[2]).starts_with("computer="));
    EXPECT_FALSE(hasAny(payloads, "Ann"));
}

TEST_F(RedactionTest, KeepsEveryRecordAtItsPlaceAndNothingBetweenThem) {
    for (int i = 0; i < 3000; ++i)
        log("line " + std::to_string(i)); // more than once round the ring
    Bytes original = ring.bytes();
    const Bytes copy = redacted(original);
    EXPECT_EQ(copy.size(), original.size());
    EXPECT_EQ(textsOf(copy), textsOf(original));
    EXPECT_EQ(readRing(copy)->records.front().position, readRing(original)->records.front().position);
    original[headerSize + 40] ^= 1; // a torn record is left out
    const Bytes torn = redacted(original);
    EXPECT_TRUE(
        std::all_of(torn.begin() + headerSize, torn.begin() + headerSize + 32, [](std::uint8_t b) { return b == 0; }));
}

TEST_F(RedactionTest, ChangesNoRecordThatIsCut) {
    for (std::size_t size = 0; size < 40; ++size)
        for (int kind = 0; kind <= lastKind; ++kind)
            ring.writer.write({}, static_cast<Kind>(kind), 0, {Bytes(size, kind == 5 ? 0x01 : 0xF0)});
    EXPECT_EQ(copied().size(), readRing(redacted(ring.bytes()))->records.size());
}

TEST(Pseudonyms, AreOfTheSameLengthAndKind) {
    const Pseudonyms pseudonyms(42);
    const std::string other = pseudonyms.of("Vox 12 ボーカル é🎹-(L)");
    EXPECT_EQ(other.size(), std::string("Vox 12 ボーカル é🎹-(L)").size());
    EXPECT_TRUE(std::isupper(other[0]) != 0 && std::islower(other[1]) != 0 && other[3] == ' ');
    EXPECT_TRUE(std::isdigit(other[4]) != 0 && std::isdigit(other[5]) != 0);
    EXPECT_TRUE(other.ends_with(")"));
    EXPECT_EQ(pseudonyms.of("Vox 12"), pseudonyms.of("Vox 12"));
    EXPECT_NE(pseudonyms.of("Vox 12"), Pseudonyms(43).of("Vox 12"));
    EXPECT_EQ(pseudonyms.of("a\xFFz\xE3").substr(1, 1), "?");
}

} // namespace
} // namespace lumbrine::blackbox
