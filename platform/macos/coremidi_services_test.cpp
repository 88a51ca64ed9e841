#include "platform/macos/coremidi_services.h"
#include "platform/macos/testing/core_midi_calls.h"
#include "platform/virtual/virtual_runtime.h"

#include <utility>

namespace lumbrine {
namespace {

using fakes::coreMIDI;
using Texts = std::vector<std::string>;

class CoreMIDIServicesTest : public ::testing::Test {
protected:
    CoreMIDIServicesTest() {
        fakes::newCoreMIDI();
        objects = fakes::liveObjects();
        services->onService([this](bool isThere) { told.push_back(isThere); });
    }
    ~CoreMIDIServicesTest() override {
        services.reset();
        fakes::newCoreMIDI();
        EXPECT_EQ(fakes::liveObjects(), objects) << "a CoreFoundation object is left";
    }

    // Client, source and destination of one name. Packets end up in `arrived`.
    void createPorts() {
        EXPECT_EQ(services->createClient("Lumbrine", client), 0);
        EXPECT_EQ(services->createSource(client, "Lumbrine", source), 0);
        services->onReturn(client, [this] { arrived.push_back({}); });
        const auto read = [this](ByteView packet) { arrived.emplace_back(packet.begin(), packet.end()); };
        EXPECT_EQ(services->createDestination(client, "Lumbrine", read, destination), 0);
    }

    Texts takeCalls() { return std::exchange(coreMIDI().calls, {}); }

    int objects = 0;
    VirtualRuntime runtime;
    std::unique_ptr<CoreMIDIServices> services = std::make_unique<CoreMIDIServices>(runtime);
    MIDIClientRef client = 0;
    MIDIEndpointRef source = 0;
    MIDIEndpointRef destination = 0;
    std::vector<Bytes> arrived; // an empty one for each return of the ports
    std::vector<bool> told;     // whether the server is there
};

TEST_F(CoreMIDIServicesTest, MakesClientSourceAndDestinationUnderTheirNames) {
    EXPECT_EQ(services->createClient("Lumbrine", client), 0);
    EXPECT_EQ(services->createSource(client, "Lumbrine", source), 0);
    EXPECT_EQ(services->createDestination(client, "Lumbrine ミキサー", [](ByteView) {}, destination), 0);
    EXPECT_EQ(services->setUniqueID(source, 0x4C6D5253), 0);
    EXPECT_EQ(takeCalls(), (Texts{"client Lumbrine", "source Lumbrine of 101", "destination Lumbrine ミキサー of 101",
                                  "uniqueID of 102 is 1282232915"}));
    EXPECT_NE(source, destination);
}

TEST_F(CoreMIDIServicesTest, HandsOnTheSystemsErrorsAndLeavesTheArgumentAlone) {
    createPorts();
    coreMIDI().clientStatus = -10830;
    coreMIDI().sourceStatus = -10831;
    coreMIDI().destinationStatus = -10832;
    coreMIDI().propertyStatus = -10843;
    coreMIDI().receivedStatus = -10844;
    MIDIClientRef another = 7;
    MIDIEndpointRef out = 8;
    MIDIEndpointRef in = 9;
    EXPECT_EQ(services->createClient("a", another), -10830);
    EXPECT_EQ(services->createSource(client, "a", out), -10831);
    EXPECT_EQ(services->createDestination(client, "a", [](ByteView) {}, in), -10832);
    EXPECT_EQ(services->setUniqueID(source, 2), -10843);
    EXPECT_EQ(services->received(source, Bytes{0xFE}), -10844);
    EXPECT_EQ(another, 7U);
    EXPECT_EQ(out, 8U);
    EXPECT_EQ(in, 9U);
}

TEST_F(CoreMIDIServicesTest, KnowsOnlyWhatItHasMade) {
    EXPECT_EQ(services->createSource(1, "a", source), kMIDIInvalidClient);
    EXPECT_EQ(services->createDestination(0, "a", [](ByteView) {}, source), kMIDIInvalidClient);
    EXPECT_EQ(services->setUniqueID(1, 2), kMIDIUnknownEndpoint);
    EXPECT_EQ(services->received(0, Bytes{0xFE}), kMIDIUnknownEndpoint);
    EXPECT_EQ(services->received(99, Bytes{0xFE}), kMIDIUnknownEndpoint);
    EXPECT_EQ(takeCalls(), Texts{});
}

TEST_F(CoreMIDIServicesTest, RefusesANameThatIsNotUTF8WithoutAskingTheSystem) {
    EXPECT_EQ(services->createClient("\xFF", client), -50);
    EXPECT_EQ(services->createSource(1, "\xC3", source), -50);
    EXPECT_EQ(services->createDestination(1, "\xED\xA0\x80", [](ByteView) {}, destination), -50);
    EXPECT_EQ(takeCalls(), Texts{});
}

TEST_F(CoreMIDIServicesTest, TakesThePortsAwayBeforeTheirClientAndLetsGoOfTheBlocks) {
    const auto life = std::make_shared<int>(0);
    services->createClient("a", client);
    services->createSource(client, "a", source);
    services->createDestination(client, "a", [life](ByteView) {}, destination);
    EXPECT_EQ(coreMIDI().blocks, 2);
    takeCalls();
    services.reset();
    EXPECT_EQ(takeCalls(), (Texts{"end endpoint 103", "end endpoint 102", "end client 101"}));
    EXPECT_EQ(coreMIDI().blocks, 0);
    EXPECT_EQ(life.use_count(), 1);
}

TEST_F(CoreMIDIServicesTest, SendsAMessageAsAListOfOnePacketThatIsStampedNow) {
    createPorts();
    coreMIDI().now = 0x0102'0304'0506'0708;
    EXPECT_EQ(services->received(source, Bytes{0xB0, 0x0F, 0x03}), 0);
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
    createPorts();
    EXPECT_EQ(services->received(source, Bytes(499, 0x11)), -50);
    EXPECT_TRUE(coreMIDI().received.empty());
    EXPECT_EQ(services->received(source, Bytes(498, 0x11)), 0);
    EXPECT_EQ(coreMIDI().received.size(), 1U);
}

// ---- The MIDI server

TEST_F(CoreMIDIServicesTest, WaitsTwoSecondsForAServerThatStartsSlowly) {
    coreMIDI().duringCreation = [this] { runtime.sleepFor(seconds(1.99)); };
    EXPECT_EQ(services->createClient("Lumbrine", client), 0);
    EXPECT_NE(client, 0U);
    runtime.runFor(seconds(10));
    EXPECT_TRUE(told.empty());
}

TEST_F(CoreMIDIServicesTest, TellsOfAServerThatStartsLater) {
    coreMIDI().duringCreation = [this] { runtime.sleepFor(seconds(5)); };
    const TimePoint before = runtime.now();
    EXPECT_EQ(services->createClient("Lumbrine", client), kMIDIServerStartErr);
    EXPECT_EQ(runtime.now() - before, seconds(2));
    runtime.runFor(seconds(2.999));
    EXPECT_TRUE(told.empty());
    runtime.runFor(seconds(0.001));
    EXPECT_EQ(told, std::vector<bool>{true});

    createPorts();
    EXPECT_EQ(takeCalls(), (Texts{"client Lumbrine", "source Lumbrine of 101", "destination Lumbrine of 101"}));
}

TEST_F(CoreMIDIServicesTest, LooksEveryTwoSecondsForAServerThatDoesNotStart) {
    fakes::endMIDIServer();
    EXPECT_EQ(services->createClient("Lumbrine", client), kMIDIServerStartErr);
    runtime.runFor(seconds(5));
    EXPECT_TRUE(told.empty());
    EXPECT_EQ(takeCalls(), (Texts{"client Lumbrine", "client Lumbrine", "client Lumbrine"}));
    fakes::startMIDIServer();
    runtime.runFor(seconds(1));
    EXPECT_EQ(told, std::vector<bool>{true});
    createPorts();
}

TEST_F(CoreMIDIServicesTest, MakesEverythingAnewWhenTheServerHasEnded) {
    createPorts();
    services->setUniqueID(source, 7);
    services->setUniqueID(destination, 8);
    fakes::endMIDIServer();
    runtime.runFor(seconds(2));
    EXPECT_EQ(told, std::vector<bool>{false});
    EXPECT_EQ(services->received(source, Bytes{0xFE}), 0) << "dropped without an error";

    fakes::startMIDIServer();
    takeCalls();
    runtime.runFor(seconds(2));
    EXPECT_EQ(told, (std::vector<bool>{false, true}));
    EXPECT_EQ(takeCalls(), (Texts{"client Lumbrine", "source Lumbrine of 104", "destination Lumbrine of 104",
                                  "uniqueID of 105 is 7", "uniqueID of 106 is 8"}));
    EXPECT_EQ(services->received(source, Bytes{0xFE}), 0);
    EXPECT_EQ(coreMIDI().received.size(), 1U);
    fakes::deliver(106, {{0x90}});
    fakes::deliver(106, {{0x91}});
    EXPECT_EQ(arrived, (std::vector<Bytes>{{}, {0x90}, {0x91}})) << "that the ports are back is told first, once";
    EXPECT_EQ(coreMIDI().blocks, 2);
}

TEST_F(CoreMIDIServicesTest, NoticesAtTheNextMessageThatTheServerHasEnded) {
    createPorts();
    fakes::endMIDIServer();
    fakes::startMIDIServer(); // another one, as the system starts it at the next call
    EXPECT_EQ(services->received(source, Bytes{0xFE}), kMIDIUnknownEndpoint);
    runtime.runUntilIdle();
    EXPECT_EQ(told, std::vector<bool>{false});
    runtime.runFor(seconds(2));
    EXPECT_EQ(told, (std::vector<bool>{false, true}));
    EXPECT_EQ(services->received(source, Bytes{0xFE}), 0);
}

TEST_F(CoreMIDIServicesTest, LeavesNoHalfOfAReturnBehind) {
    createPorts();
    fakes::endMIDIServer();
    runtime.runFor(seconds(2));
    fakes::startMIDIServer();
    coreMIDI().destinationStatus = -10845;
    takeCalls();
    runtime.runFor(seconds(2));
    EXPECT_EQ(takeCalls(), (Texts{"client Lumbrine", "source Lumbrine of 104", "destination Lumbrine of 104",
                                  "end endpoint 105", "end client 104"}));
    EXPECT_EQ(told, std::vector<bool>{false});
    coreMIDI().destinationStatus = 0;
    runtime.runFor(seconds(2));
    EXPECT_EQ(told, (std::vector<bool>{false, true}));
}

// The same on both kinds of processor.
class Incoming : public CoreMIDIServicesTest, public ::testing::WithParamInterface<bool> {
protected:
    Incoming() { coreMIDI().alignsPackets = GetParam(); }

    static constexpr ::MIDIEndpointRef systemDestination = 103; // after client and source
};

TEST_P(Incoming, PacketsOfEveryLengthArriveInOrder) {
    createPorts();
    std::vector<Bytes> sent;
    for (std::size_t length = 1; length <= 40; ++length)
        sent.emplace_back(length, static_cast<std::uint8_t>(length));
    fakes::deliver(systemDestination, sent);
    EXPECT_EQ(arrived, sent);
}

TEST_P(Incoming, APacketWithoutBytesIsPassedOverAndALongOneIsCut) {
    createPorts();
    fakes::deliver(systemDestination, {{}, Bytes(1000, 7), {}, {0xFE}});
    EXPECT_EQ(arrived, (std::vector<Bytes>{Bytes(256, 7), {0xFE}}));
}

TEST_P(Incoming, AListWithoutPacketsIsNothing) {
    createPorts();
    fakes::deliver(systemDestination, {});
    EXPECT_TRUE(arrived.empty());
}

INSTANTIATE_TEST_SUITE_P(BothLayouts, Incoming, ::testing::Values(true, false),
                         [](const auto& given) { return std::string(given.param ? "Aligned" : "SideBySide"); });

} // namespace
} // namespace lumbrine
