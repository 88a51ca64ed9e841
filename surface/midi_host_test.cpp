#include "platform/virtual/still_runtime.h"
#include "platform/virtual/virtual_runtime.h"
#include "surface/midi_host.h"
#include "surface/testing/recording_midi_services.h"

#include <algorithm>

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
    EXPECT_EQ(services.sent, Packets{});
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

TEST_F(MIDIHostTest, CreatesWhatIsMissingWhenItIsStartedAgain) {
    services.clientStatus = -19;
    EXPECT_FALSE(host->start());
    services.clientStatus = 0;
    services.destinationStatus = 7;
    EXPECT_FALSE(host->start());
    services.destinationStatus = 0;
    services.calls.clear();
    EXPECT_TRUE(host->start());
    EXPECT_EQ(services.calls,
              (Texts{"destination Lumbrine of 11", "id of 22 is 1282232915", "id of 33 is 1282232900"}));
    EXPECT_TRUE(host->start());
    EXPECT_EQ(services.calls.size(), 3u);
}

// A former process of ours may still have the IDs.
class RefusedIDTest : public ::testing::Test {
protected:
    RefusedIDTest() {
        services.uniqueIDStatus = -10843;
        host->onIDRefused = [this](const MIDIError& error) { refused.push_back(error.description); };
    }

    VirtualRuntime runtime;
    RecordingMIDIServices services;
    Texts refused;
    std::shared_ptr<MIDIHost> host = std::make_shared<MIDIHost>(runtime, services, "Lumbrine", 1282232915, 1282232900);
};

TEST_F(RefusedIDTest, IsSetAgainAfterFiveSeconds) {
    EXPECT_TRUE(host->start());
    services.uniqueIDStatus = 0;
    services.calls.clear();
    runtime.runFor(MIDIHost::idRetry - seconds(0.001));
    EXPECT_EQ(services.calls, Texts{});
    runtime.runFor(seconds(0.001));
    std::ranges::sort(services.calls);
    EXPECT_EQ(services.calls, (Texts{"id of 22 is 1282232915", "id of 33 is 1282232900"}));
    EXPECT_EQ(refused, Texts{});
}

TEST_F(RefusedIDTest, IsToldWhenItIsRefusedAgainAndThenLeftAlone) {
    EXPECT_TRUE(host->start());
    runtime.runFor(seconds(60));
    EXPECT_EQ(services.calls.size(), 7u);
    EXPECT_EQ(refused, Texts(2, "MIDIObjectSetIntegerProperty failed: -10843"));
}

TEST_F(RefusedIDTest, IsForgottenWithItsHost) {
    EXPECT_TRUE(host->start());
    host.reset();
    runtime.runFor(seconds(60));
    EXPECT_EQ(services.calls.size(), 5u);
}

TEST_F(MIDIHostTest, SendsEachMessageFromItsOwnSource) {
    ASSERT_TRUE(host->start());
    host->send(Bytes{0xB0, 0x0F, 0x03});
    host->send(Bytes{0xFF});
    EXPECT_EQ(services.sent, (Packets{{0xB0, 0x0F, 0x03}, {0xFF}}));
    EXPECT_EQ(services.calls.size(), 5u);
}

TEST_F(MIDIHostTest, CountsTheMessagesThatCannotBeSent) {
    ASSERT_TRUE(host->start());
    services.receivedStatus = -11;
    host->send(Bytes{0xB0, 0x0F, 0x03});
    host->send(Bytes{0xB0, 0x2F, 0x40});
    services.receivedStatus = 0;
    host->send(Bytes{0xFF});
    EXPECT_EQ(host->dropped(), 2u);
}

TEST_F(MIDIHostTest, SendsNothingBeforeItIsStarted) {
    host->send(Bytes{0x90, 0x00, 0x7F});
    EXPECT_EQ(services.sent, Packets{});
}

TEST_F(MIDIHostTest, SendsNoEmptyMessage) {
    ASSERT_TRUE(host->start());
    host->send({});
    EXPECT_EQ(services.sent, Packets{});
}

TEST_F(MIDIHostTest, HandsOnEachPacket) {
    Packets incoming;
    host->onIncoming = [&](ByteView bytes) { incoming.emplace_back(bytes.begin(), bytes.end()); };
    ASSERT_TRUE(host->start());
    for (const Bytes& packet : Packets{{0x90, 0x00, 0x00}, {0xF0}, {0xF7}})
        services.deliver(packet);
    EXPECT_EQ(incoming, (Packets{{0x90, 0x00, 0x00}, {0xF0}, {0xF7}}));
}

TEST_F(MIDIHostTest, DropsWhatArrivesWhenNobodyListens) {
    ASSERT_TRUE(host->start());
    services.deliver(Bytes{0x90, 0x00, 0x00});
    EXPECT_EQ(services.sent, Packets{});
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
    services.deliver(Bytes{0x90, 0x00, 0x00});
    EXPECT_EQ(incoming, 0);
}

} // namespace
} // namespace lumbrine
