#include "platform/virtual/still_runtime.h"
#include "surface/midi_host.h"
#include "surface/testing/recording_midi_services.h"

#include <cstring>

namespace lumbrine {
namespace {

using Packets = std::vector<Bytes>;
using Texts = std::vector<std::string>;

class MIDIHostTest : public ::testing::Test {
protected:
    StillRuntime runtime;
    RecordingMIDIServices services;
    std::shared_ptr<MIDIHost> host = std::make_shared<MIDIHost>(runtime, services, "Lumbrine", 1282232915, 1282232900);
};

TEST_F(MIDIHostTest, CreatesNothingUntilItIsStarted) {
    EXPECT_EQ(services.calls, Texts{});
}

TEST_F(MIDIHostTest, CreatesClientSourceAndDestinationThenNamesThem) {
    ASSERT_TRUE(host->start());
    EXPECT_EQ(services.calls, (Texts{"client Lumbrine", "source Lumbrine of 11", "destination Lumbrine of 11",
                                     "id of 22 is 1282232915", "id of 33 is 1282232900"}));
}

TEST_F(MIDIHostTest, EndsWithTheClientsError) {
    services.clientStatus = -50;
    const auto started = host->start();
    ASSERT_FALSE(started);
    EXPECT_EQ(started.error().code, -50);
    EXPECT_EQ(started.error().description, "MIDIClientCreateWithBlock failed: -50");
    EXPECT_EQ(services.calls, Texts{"client Lumbrine"});
}

TEST_F(MIDIHostTest, CreatesNoDestinationAndSendsNothingWithoutASource) {
    services.sourceStatus = -10830;
    const auto started = host->start();
    ASSERT_FALSE(started);
    EXPECT_EQ(started.error().code, -10830);
    EXPECT_EQ(started.error().description, "MIDISourceCreate failed: -10830");
    EXPECT_EQ(services.calls, (Texts{"client Lumbrine", "source Lumbrine of 11"}));

    host->send(Bytes{0x90, 0x00, 0x7F});
    EXPECT_EQ(services.lists, Packets{});
}

TEST_F(MIDIHostTest, KeepsItsSourceWhenTheDestinationFails) {
    services.destinationStatus = 7;
    const auto started = host->start();
    ASSERT_FALSE(started);
    EXPECT_EQ(started.error().code, 7);
    EXPECT_EQ(started.error().description, "MIDIDestinationCreateWithBlock failed: 7");
    EXPECT_EQ(services.calls, (Texts{"client Lumbrine", "source Lumbrine of 11", "destination Lumbrine of 11"}));

    host->send(Bytes{0x90, 0x00, 0x7F});
    EXPECT_EQ(services.sent, (Packets{{0x90, 0x00, 0x7F}}));
}

TEST_F(MIDIHostTest, DoesNotMindThatIDsCannotBeSet) {
    services.uniqueIDStatus = -1;
    EXPECT_TRUE(host->start());
    EXPECT_EQ(services.calls.size(), 5u);
}

TEST_F(MIDIHostTest, SendsAMessageAsOnePacketForNow) {
    ASSERT_TRUE(host->start());
    host->send(Bytes{0xB0, 0x0F, 0x03});
    Bytes expected(512, 0);
    expected[0] = 1;  // one packet; its time stamp, 4-11, is 0
    expected[12] = 3; // bytes in it
    expected[14] = 0xB0;
    expected[15] = 0x0F;
    expected[16] = 0x03;
    EXPECT_EQ(services.lists, Packets{expected});
    EXPECT_EQ(services.calls.size(), 5u); // and from its own source
}

TEST_F(MIDIHostTest, SendsNothingBeforeItIsStarted) {
    host->send(Bytes{0x90, 0x00, 0x7F});
    EXPECT_EQ(services.lists, Packets{});
}

TEST_F(MIDIHostTest, SendsNoEmptyMessage) {
    ASSERT_TRUE(host->start());
    host->send({});
    EXPECT_EQ(services.lists, Packets{});
}

TEST_F(MIDIHostTest, SendsWhatFitsAPacketList) {
    ASSERT_TRUE(host->start());
    host->send(Bytes(499, 0x11));
    EXPECT_EQ(services.lists, Packets{});
    host->send(Bytes(498, 0x11));
    EXPECT_EQ(services.lists.size(), 1u);
}

// A packet list as the system delivers it, of any length.
Bytes listOf(const Packets& packets) {
    Bytes list(4);
    list[0] = static_cast<std::uint8_t>(packets.size());
    for (const Bytes& packet : packets) {
        while (list.size() % 4 != 0)
            list.push_back(0);
        list.insert(list.end(), 8, 0);
        const auto length = static_cast<std::uint16_t>(packet.size());
        list.resize(list.size() + sizeof length);
        std::memcpy(list.data() + list.size() - sizeof length, &length, sizeof length);
        list.insert(list.end(), packet.begin(), packet.end());
    }
    return list;
}

TEST_F(MIDIHostTest, HandsOnEachPacketThatIsNotEmpty) {
    Packets incoming;
    host->onIncoming = [&](ByteView bytes) { incoming.emplace_back(bytes.begin(), bytes.end()); };
    ASSERT_TRUE(host->start());
    services.deliver(listOf({{0x90, 0x00, 0x00}, {}, {0xF0}, Bytes(257, 0x01), {0xF7}}));
    EXPECT_EQ(incoming, (Packets{{0x90, 0x00, 0x00}, {0xF0}, Bytes(256, 0x01), {0xF7}}));
}

TEST_F(MIDIHostTest, DropsWhatArrivesWhenNobodyListens) {
    ASSERT_TRUE(host->start());
    services.deliver(listOf({{0x90, 0x00, 0x00}}));
    EXPECT_EQ(services.lists, Packets{});
}

TEST_F(MIDIHostTest, TellsWhenItsPortsAreBackAfterALoss) {
    int returns = 0;
    host->onReturn = [&] { ++returns; };
    ASSERT_TRUE(host->start());
    services.portsAreBack();
    EXPECT_EQ(returns, 1);
    host->onReturn = nullptr;
    services.portsAreBack();
    host.reset();
    services.portsAreBack();
    EXPECT_EQ(returns, 1);
}

TEST_F(MIDIHostTest, DropsWhatArrivesWhenItIsGone) {
    int incoming = 0;
    host->onIncoming = [&](ByteView) { ++incoming; };
    ASSERT_TRUE(host->start());
    host.reset();
    services.deliver(listOf({{0x90, 0x00, 0x00}}));
    EXPECT_EQ(incoming, 0);
}

} // namespace
} // namespace lumbrine
