#include "platform/macos/coremidi_services.h"
#include "platform/macos/testing/core_midi_calls.h"

namespace lumbrine {
namespace {

using fakes::coreMIDI;
using Texts = std::vector<std::string>;

class CoreMIDIServicesTest : public ::testing::Test {
protected:
    CoreMIDIServicesTest() {
        fakes::newCoreMIDI();
        objects = fakes::liveObjects();
    }
    ~CoreMIDIServicesTest() override {
        services.reset();
        fakes::newCoreMIDI();
        EXPECT_EQ(fakes::liveObjects(), objects) << "a CoreFoundation object is left";
    }

    // A destination whose packets end up in `arrived`.
    MIDIEndpointRef destination() {
        MIDIEndpointRef made = 0;
        const auto read = [this](ByteView packet) { arrived.emplace_back(packet.begin(), packet.end()); };
        EXPECT_EQ(services->createDestination(1, "Lumbrine", read, made), 0);
        return made;
    }

    int objects = 0;
    std::unique_ptr<CoreMIDIServices> services = std::make_unique<CoreMIDIServices>();
    std::vector<Bytes> arrived;
};

TEST_F(CoreMIDIServicesTest, MakesClientSourceAndDestinationUnderTheirNames) {
    MIDIClientRef client = 0;
    MIDIEndpointRef source = 0;
    MIDIEndpointRef destination = 0;
    EXPECT_EQ(services->createClient("Lumbrine", client), 0);
    EXPECT_EQ(services->createSource(client, "Lumbrine", source), 0);
    EXPECT_EQ(services->createDestination(client, "Lumbrine ミキサー", [](ByteView) {}, destination), 0);
    EXPECT_EQ(services->setUniqueID(source, 0x4C6D5253), 0);
    EXPECT_EQ(coreMIDI().calls, (Texts{"client Lumbrine", "source Lumbrine of 101",
                                       "destination Lumbrine ミキサー of 101", "uniqueID of 102 is 1282232915"}));
    EXPECT_EQ(client, 101U);
    EXPECT_EQ(source, 102U);
    EXPECT_EQ(destination, 103U);
}

TEST_F(CoreMIDIServicesTest, HandsOnTheSystemsErrorsAndLeavesTheArgumentAlone) {
    coreMIDI().clientStatus = -10830;
    coreMIDI().sourceStatus = -10831;
    coreMIDI().destinationStatus = -10832;
    coreMIDI().propertyStatus = -10843;
    coreMIDI().receivedStatus = -10844;
    MIDIClientRef client = 7;
    MIDIEndpointRef source = 8;
    MIDIEndpointRef destination = 9;
    EXPECT_EQ(services->createClient("a", client), -10830);
    EXPECT_EQ(services->createSource(1, "a", source), -10831);
    EXPECT_EQ(services->createDestination(1, "a", [](ByteView) {}, destination), -10832);
    EXPECT_EQ(services->setUniqueID(1, 2), -10843);
    EXPECT_EQ(services->received(1, Bytes{0xFE}), -10844);
    EXPECT_EQ(client, 7U);
    EXPECT_EQ(source, 8U);
    EXPECT_EQ(destination, 9U);
    EXPECT_EQ(coreMIDI().blocks, 0);
    coreMIDI().calls.clear();
    services.reset();
    EXPECT_EQ(coreMIDI().calls, Texts{}) << "there is nothing to take away";
}

TEST_F(CoreMIDIServicesTest, RefusesANameThatIsNotUTF8WithoutAskingTheSystem) {
    MIDIClientRef client = 0;
    MIDIEndpointRef endpoint = 0;
    EXPECT_EQ(services->createClient("\xFF", client), -50);
    EXPECT_EQ(services->createSource(1, "\xC3", endpoint), -50);
    EXPECT_EQ(services->createDestination(1, "\xED\xA0\x80", [](ByteView) {}, endpoint), -50);
    EXPECT_EQ(coreMIDI().calls, Texts{});
}

TEST_F(CoreMIDIServicesTest, TakesThePortsAwayBeforeTheirClientAndLetsGoOfTheBlocks) {
    const auto life = std::make_shared<int>(0);
    MIDIClientRef client = 0;
    MIDIEndpointRef endpoint = 0;
    services->createClient("a", client);
    services->createSource(client, "a", endpoint);
    services->createDestination(client, "a", [life](ByteView) {}, endpoint);
    EXPECT_EQ(coreMIDI().blocks, 2);
    EXPECT_EQ(life.use_count(), 2);
    coreMIDI().calls.clear();
    services.reset();
    EXPECT_EQ(coreMIDI().calls, (Texts{"end endpoint 103", "end endpoint 102", "end client 101"}));
    EXPECT_EQ(coreMIDI().blocks, 0);
    EXPECT_EQ(life.use_count(), 1);
}

TEST_F(CoreMIDIServicesTest, SendsAMessageAsAListOfOnePacketThatIsStampedNow) {
    coreMIDI().now = 0x0102'0304'0506'0708;
    EXPECT_EQ(services->received(5, Bytes{0xB0, 0x0F, 0x03}), 0);
    Bytes expected(512, 0);
    expected[0] = 1; // one packet
    for (std::uint8_t i = 0; i < 8; ++i)
        expected[4U + i] = static_cast<std::uint8_t>(8 - i); // its time stamp
    expected[12] = 3;                                        // bytes in it
    expected[14] = 0xB0;
    expected[15] = 0x0F;
    expected[16] = 0x03;
    EXPECT_EQ(coreMIDI().received, std::vector<Bytes>{expected});
}

TEST_F(CoreMIDIServicesTest, RefusesAMessageThatDoesNotFitAList) {
    EXPECT_EQ(services->received(5, Bytes(499, 0x11)), -50);
    EXPECT_TRUE(coreMIDI().received.empty());
    EXPECT_EQ(services->received(5, Bytes(498, 0x11)), 0);
    EXPECT_EQ(coreMIDI().received.size(), 1U);
}

// The same on both kinds of processor.
class Incoming : public CoreMIDIServicesTest, public ::testing::WithParamInterface<bool> {
protected:
    Incoming() { coreMIDI().alignsPackets = GetParam(); }
};

TEST_P(Incoming, PacketsOfEveryLengthArriveInOrder) {
    std::vector<Bytes> sent;
    for (std::size_t length = 1; length <= 40; ++length)
        sent.emplace_back(length, static_cast<std::uint8_t>(length));
    fakes::deliver(destination(), sent);
    EXPECT_EQ(arrived, sent);
}

TEST_P(Incoming, APacketWithoutBytesIsPassedOverAndALongOneIsCut) {
    fakes::deliver(destination(), {{}, Bytes(1000, 7), {}, {0xFE}});
    EXPECT_EQ(arrived, (std::vector<Bytes>{Bytes(256, 7), {0xFE}}));
}

TEST_P(Incoming, AListWithoutPacketsIsNothing) {
    fakes::deliver(destination(), {});
    EXPECT_TRUE(arrived.empty());
}

INSTANTIATE_TEST_SUITE_P(BothLayouts, Incoming, ::testing::Values(true, false),
                         [](const auto& given) { return std::string(given.param ? "Aligned" : "SideBySide"); });

} // namespace
} // namespace lumbrine
