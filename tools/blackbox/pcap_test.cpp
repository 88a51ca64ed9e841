#include "blackbox/testing/memory_ring.h"
#include "tools/blackbox/pcap.h"

#include <cstring>

namespace lumbrine::blackbox {
namespace {

struct PcapTest : testing::Test {
    Bytes pcap() const {
        file = ring.bytes();
        const auto records = timed(readRing(file)->records);
        return pcapOf(records, receiverPortIn(records));
    }

    static std::uint32_t wordAt(const Bytes& bytes, std::size_t offset) {
        std::uint32_t word = 0;
        std::memcpy(&word, bytes.data() + offset, sizeof word);
        return word;
    }

    // The packets with a byte for their interface in front.
    static std::vector<Bytes> packetsIn(const Bytes& bytes) {
        std::vector<Bytes> packets;
        std::size_t offset = 0;
        while (offset + 12 <= bytes.size()) {
            const std::size_t length = wordAt(bytes, offset + 4);
            EXPECT_EQ(wordAt(bytes, offset + length - 4), length);
            if (wordAt(bytes, offset) == 6) {
                const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(offset + 28);
                packets.push_back({bytes[offset + 8]});
                packets.back().insert(packets.back().end(), begin, begin + wordAt(bytes, offset + 20));
            }
            offset += length;
        }
        EXPECT_EQ(offset, bytes.size());
        return packets;
    }

    MemoryRing ring;
    mutable Bytes file;
};

TEST_F(PcapTest, HasTwoInterfacesWithNanoseconds) {
    const Bytes bytes = pcap();
    const Bytes expected{
        0x0A, 0x0D, 0x0D, 0x0A, 28,   0,    0,    0, // section header
        0x4D, 0x3C, 0x2B, 0x1A, 1,    0,    0,    0, // byte order, version 1.0
        0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 28,  0,   0,   0, 1, 0, 0, 0, 44, 0, 0, 0, // interface
        101,  0,    0,    0,    0,    0,    0,    0,                                               // raw IP
        2,    0,    7,    0,    'n',  'e',  't',  'w',  'o', 'r', 'k', 0, 9, 0, 1, 0, 9,  0, 0, 0, // times in 10^-9 s
        0,    0,    0,    0,    44,   0,    0,    0,                                               // end of the options
        1,    0,    0,    0,    40,   0,    0,    0,                                               // interface
        147,  0,    0,    0,    0,    0,    0,    0,                                               // private use
        2,    0,    4,    0,    'm',  'i',  'd',  'i',  9,   0,   1,   0, 9, 0, 0, 0, 0,  0, 0, 0, 40, 0, 0, 0};
    EXPECT_EQ(bytes, expected);
}

TEST_F(PcapTest, HasDatagramsInIPv4WithRightSums) {
    const SocketHead bound{.result = 0, .port = 52701};
    ring.writer.write({}, Kind::socket, static_cast<std::uint8_t>(SocketEvent::bound), {bytesOf(bound)});
    DatagramHead head;
    head.peer = {.host = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 10, 0, 0, 7}, .port = 5000};
    ring.writer.write({}, Kind::datagramIn, 0, {bytesOf(head), Bytes{0x01, 0x00}});
    head.result = -11;
    ring.writer.write({}, Kind::datagramOut, 0, {bytesOf(head), Bytes{0x01, 0x7F}});
    EXPECT_EQ(packetsIn(pcap()), (std::vector<Bytes>{{0,                                              // network
                                                      0x45, 0x00, 0x00, 0x1E, 0x00, 0x00, 0x40, 0x00, // IPv4
                                                      0x40, 0x11, 0x6E, 0xC7,                         // UDP, sum
                                                      10,   0,    0,    7,    192,  0,    2,    1,    // addresses
                                                      0x13, 0x88, 0xCD, 0xDD, 0x00, 0x0A, 0x51, 0x6C, // UDP
                                                      0x01, 0x00}}));
}

TEST_F(PcapTest, HasDatagramsInIPv6) {
    DatagramHead head;
    head.peer = {.host = {0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7}, .port = 5000};
    ring.writer.write({}, Kind::datagramOut, 0, {bytesOf(head), Bytes{0x01, 0x7F, 0x00}});
    const Bytes packet = packetsIn(pcap()).at(0);
    ASSERT_EQ(packet.size(), 1U + 40 + 8 + 3);
    EXPECT_EQ(Bytes(packet.begin() + 1, packet.begin() + 9), (Bytes{0x60, 0, 0, 0, 0, 11, 17, 64}));
    EXPECT_EQ(packet[9], 0x20) << "from the receiver";
    EXPECT_EQ(Bytes(packet.begin() + 41, packet.begin() + 45), (Bytes{0xCD, 0xDC, 0x13, 0x88}));
}

TEST_F(PcapTest, HasMIDIWithItsSurfaceAndDirection) {
    ring.writer.write({}, Kind::midiIn, 1, {Bytes{0x90, 0x00, 0x00}});
    ring.writer.write({}, Kind::midiOut, 0, {bytesOf(ResultHead{}), Bytes{0x90, 0x00, 0x7F}});
    EXPECT_EQ(packetsIn(pcap()), (std::vector<Bytes>{{1, 1, 0, 0x90, 0x00, 0x00}, {1, 0, 1, 0x90, 0x00, 0x7F}}));
}

TEST_F(PcapTest, LeavesOutWhatIsCutAndWhatIsNeither) {
    for (int kind = 0; kind <= lastKind; ++kind)
        ring.writer.write({}, static_cast<Kind>(kind), 0, {Bytes(3)});
    EXPECT_EQ(packetsIn(pcap()).size(), 1U); // a MIDI packet of three bytes
}

} // namespace
} // namespace lumbrine::blackbox
