#include "blackbox/testing/memory_ring.h"
#include "tools/blackbox/statistics.h"

namespace lumbrine::blackbox {
namespace {

using Times = std::vector<std::int64_t>;

struct StatisticsTest : testing::Test {
    void datagram(std::int64_t time, const Bytes& bytes) {
        const DatagramHead head;
        ring.writer.write({time, 1}, Kind::datagramIn, 0, {bytesOf(head), bytes});
    }
    void out(std::int64_t time, const Bytes& packet, std::uint32_t thread = 1, std::int32_t result = 0) {
        const ResultHead head{result};
        ring.writer.write({time, thread}, Kind::midiOut, 0, {bytesOf(head), packet});
    }
    void in(std::int64_t time, const Bytes& packet) { ring.writer.write({time, 9}, Kind::midiIn, 0, {packet}); }

    Statistics statistics() const {
        const Bytes file = ring.bytes();
        return statisticsOf(timed(readRing(file)->records));
    }

    MemoryRing ring;
};

TEST_F(StatisticsTest, MeasureAFaderMoveUpToItsLastPacketOnItsThread) {
    datagram(1000, {0x01, 0x01, 0x02, 0x3F, 0xFF});
    out(1100, {0xB0, 0x02, 0x7F});
    out(1150, {0x90, 0x00, 0x7F}, 5);
    out(1300, {0xB0, 0x22, 0x7F});
    out(9999, {0xB0, 0x23, 0x7F}, 5);
    datagram(20000, {0x01, 0x00});
    out(21000, {0xB0, 0x22, 0x7F});
    EXPECT_EQ(statistics().toMIDI, Times{300});
}

TEST_F(StatisticsTest, MeasureAFadersEcho) {
    out(1000, {0xB0, 0x02, 0x7F, 0xB0, 0x22, 0x7F});
    in(1500, {0xB0, 0x03, 0x7F, 0xB0, 0x23, 0x7F});
    in(2500, {0xB0, 0x02, 0x7F, 0xB0, 0x22, 0x7F});
    in(3500, {0xB0, 0x02, 0x7F, 0xB0, 0x22, 0x7F});
    EXPECT_EQ(statistics().toEcho, Times{1500});
}

TEST_F(StatisticsTest, MeasureHowFastTheHostFollowsABankKey) {
    const Bytes name{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x01, 'K', 'i', 'c', 'k', 0xF7};
    in(500, name);
    out(1000, {0xB0, 0x0F, 0x0A, 0xB0, 0x2F, 0x43});
    out(1100, {0xB0, 0x0F, 0x0A, 0xB0, 0x2F, 0x03});
    in(5000, name);
    in(6000, name);
    EXPECT_EQ(statistics().hostReaction, Times{4000});
}

TEST_F(StatisticsTest, CountLostPingsAndWhatWasNotSent) {
    constexpr std::int64_t second = 1'000'000'000;
    const Bytes ping{0x90, 0x00, 0x00};
    for (const int time : {1, 2, 3, 6, 7, 60})
        in(time * second, ping);
    out(61 * second, {0xFF}, 1, -11);
    EXPECT_EQ(statistics().pingGaps.size(), 5U);
    EXPECT_EQ(statistics().lostPings, 3) << "a minute without pings is a host that was away";
    EXPECT_EQ(statistics().unsentMIDI, 1);
}

TEST_F(StatisticsTest, HaveATextForNothing) {
    EXPECT_EQ(textOf(statistics(), {}), "No records.\n");
}

} // namespace
} // namespace lumbrine::blackbox
