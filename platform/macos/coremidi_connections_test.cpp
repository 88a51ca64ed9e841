#include "platform/macos/coremidi_connections.h"
#include "platform/macos/coremidi_services.h"
#include "platform/macos/testing/core_midi_calls.h"
#include "platform/virtual/virtual_runtime.h"

#include <utility>

namespace lumbrine {
namespace {

using fakes::coreMIDI;
using Texts = std::vector<std::string>;

// A workstation that connects to the ports of a receiver.
class CoreMIDIConnectionsTest : public ::testing::Test {
protected:
    CoreMIDIConnectionsTest() {
        fakes::newCoreMIDI();
        objects = fakes::liveObjects();
        makeReceiver();
    }
    ~CoreMIDIConnectionsTest() override {
        connection.reset();
        receiver.reset();
        fakes::newCoreMIDI();
        EXPECT_EQ(fakes::liveObjects(), objects) << "a CoreFoundation object is left";
    }

    void makeReceiver() {
        receiver = std::make_unique<CoreMIDIServices>(runtime);
        receiver->onService([](bool) {});
    }

    // Source and destination of one name. Packets from the workstation end up in `received`.
    void createPorts(const std::string& name = "Lumbrine") {
        MIDIClientRef client = 0;
        MIDIEndpointRef destination = 0;
        EXPECT_EQ(receiver->createClient("Lumbrine", client), 0);
        EXPECT_EQ(receiver->createSource(client, name, source), 0);
        const auto read = [this](ByteView packet) { received.emplace_back(packet.begin(), packet.end()); };
        EXPECT_EQ(receiver->createDestination(client, name, read, destination), 0);
    }

    void connect() {
        connection = connections.connect("Lumbrine",
                                         [this](ByteView packet) { heard.emplace_back(packet.begin(), packet.end()); });
        runtime.runUntilIdle();
    }

    int objects = 0;
    VirtualRuntime runtime;
    std::unique_ptr<CoreMIDIServices> receiver;
    CoreMIDIConnections connections{runtime};
    std::unique_ptr<MIDIConnection> connection;
    MIDIEndpointRef source = 0;
    std::vector<Bytes> received; // by the receiver
    std::vector<Bytes> heard;    // by the workstation
};

TEST_F(CoreMIDIConnectionsTest, ConnectsBothWaysAtOnceWithPortsThatExist) {
    createPorts();
    connect();
    EXPECT_TRUE(connection->connected());
    connection->send(Bytes{0x90, 0x00, 0x00});
    receiver->received(source, Bytes{0x90, 0x00, 0x7F});
    EXPECT_EQ(received, (std::vector<Bytes>{{0x90, 0x00, 0x00}}));
    EXPECT_EQ(heard, (std::vector<Bytes>{{0x90, 0x00, 0x7F}}));
}

TEST_F(CoreMIDIConnectionsTest, ConnectsWithinHalfASecondWhenThePortsAppear) {
    connect();
    EXPECT_FALSE(connection->connected());
    connection->send(Bytes{0xFE});
    createPorts();
    runtime.runFor(seconds(0.5));
    EXPECT_TRUE(connection->connected());
    EXPECT_TRUE(received.empty()) << "what was sent before is dropped";
}

TEST_F(CoreMIDIConnectionsTest, ConnectsOnlyWithPortsOfItsVeryName) {
    createPorts("Lumbrine B");
    connect();
    runtime.runFor(seconds(2));
    EXPECT_FALSE(connection->connected());
}

TEST_F(CoreMIDIConnectionsTest, KeepsTheFirstOfSeveralPortsOfItsName) {
    createPorts();
    const MIDIEndpointRef first = source;
    connect();
    CoreMIDIServices another(runtime);
    MIDIClientRef client = 0;
    MIDIEndpointRef second = 0;
    another.createClient("Another", client);
    another.createSource(client, "Lumbrine", second);
    another.createDestination(client, "Lumbrine", [](ByteView) {}, second);
    runtime.runFor(seconds(2));
    connection->send(Bytes{0xFE});
    EXPECT_EQ(received, (std::vector<Bytes>{{0xFE}}));
    receiver->received(first, Bytes{0xFE});
    EXPECT_EQ(heard.size(), 1U);
}

TEST_F(CoreMIDIConnectionsTest, NoticesThatThePortsVanishAndConnectsAgainWhenTheyReturn) {
    createPorts();
    connect();
    receiver.reset();
    runtime.runFor(seconds(0.5));
    EXPECT_FALSE(connection->connected());
    makeReceiver();
    createPorts();
    runtime.runFor(seconds(0.5));
    EXPECT_TRUE(connection->connected());
    receiver->received(source, Bytes{0xFE});
    EXPECT_EQ(heard, (std::vector<Bytes>{{0xFE}}));
}

TEST_F(CoreMIDIConnectionsTest, LooksSoonerWhenAMessageIsRefused) {
    createPorts();
    connect();
    receiver.reset();
    connection->send(Bytes{0xFE});
    connection->send(Bytes{0xFE});
    runtime.runUntilIdle();
    EXPECT_FALSE(connection->connected());
}

TEST_F(CoreMIDIConnectionsTest, StaysConnectedWhenOneMessageIsRefusedAndThePortsAreThere) {
    createPorts();
    connect();
    coreMIDI().sendStatus = -10844;
    connection->send(Bytes{0xFE});
    runtime.runUntilIdle();
    coreMIDI().sendStatus = 0;
    EXPECT_TRUE(connection->connected());
    connection->send(Bytes(600, 0x11)); // fits no list
    connection->send(Bytes{0x90});
    EXPECT_EQ(received, (std::vector<Bytes>{{0x90}}));
}

TEST_F(CoreMIDIConnectionsTest, MakesAClientOfTheNewServerBeforeItGivesUpTheOldOne) {
    createPorts();
    connect();
    fakes::endMIDIServer();
    runtime.runFor(seconds(3));
    EXPECT_FALSE(connection->connected());
    coreMIDI().calls.clear();
    fakes::startMIDIServer();
    runtime.runFor(seconds(3));
    EXPECT_TRUE(connection->connected());
    const Texts& calls = coreMIDI().calls;
    const auto made = std::ranges::find(calls, "client Lumbrine host");
    ASSERT_NE(made, calls.end());
    EXPECT_NE(std::find(made, calls.end(), "end client 104"), calls.end());
    connection->send(Bytes{0xFE});
    EXPECT_EQ(received, (std::vector<Bytes>{{0xFE}}));
}

TEST_F(CoreMIDIConnectionsTest, LeavesNothingOfARefusedBeginningBehind) {
    createPorts();
    const int blocks = coreMIDI().blocks;
    coreMIDI().portStatus = -10831;
    connect();
    runtime.runFor(seconds(2));
    EXPECT_FALSE(connection->connected());
    EXPECT_EQ(coreMIDI().blocks, blocks);
    coreMIDI().portStatus = 0;
    coreMIDI().connectStatus = -10831;
    runtime.runFor(seconds(2));
    EXPECT_FALSE(connection->connected());
    EXPECT_EQ(coreMIDI().blocks, blocks + 2);
    coreMIDI().connectStatus = 0;
    runtime.runFor(seconds(0.5));
    EXPECT_TRUE(connection->connected());
}

TEST_F(CoreMIDIConnectionsTest, ReadsEachPacketOfAListWhateverItsStamp) {
    createPorts();
    connect();
    fakes::deliver(fakes::inputs().front(), {{0x90, 0x00, 0x7F}, {}, {0xFE}}, 7);
    EXPECT_EQ(heard, (std::vector<Bytes>{{0x90, 0x00, 0x7F}, {0xFE}}));
}

TEST_F(CoreMIDIConnectionsTest, MayAnswerWithinACallOfTheReader) {
    createPorts();
    connection = connections.connect("Lumbrine", [this](ByteView) { connection->send(Bytes{0x90}); });
    runtime.runUntilIdle();
    receiver->received(source, Bytes{0xFE});
    EXPECT_EQ(received, (std::vector<Bytes>{{0x90}}));
}

TEST_F(CoreMIDIConnectionsTest, DoesNotWaitForAServerThatIsSlow) {
    createPorts();
    coreMIDI().duringCreation = [this] { runtime.sleepFor(seconds(5)); };
    const TimePoint before = runtime.now();
    connection = connections.connect("Lumbrine", [](ByteView) {});
    EXPECT_EQ(runtime.now(), before);
    runtime.runFor(seconds(5));
    EXPECT_TRUE(connection->connected());
}

TEST_F(CoreMIDIConnectionsTest, WaitsAtItsEndForTheReaderAndCallsItNoMore) {
    createPorts();
    int begun = 0;
    int ended = 0;
    connection = connections.connect("Lumbrine", [&](ByteView) {
        ++begun;
        runtime.sleepFor(seconds(1));
        ++ended;
    });
    runtime.runUntilIdle();
    const MIDIPortRef input = fakes::inputs().front();
    runtime.background(Priority::normal, [&] { fakes::deliver(input, {{0xFE}}); });
    runtime.runUntilIdle();
    EXPECT_EQ(begun, 1);
    EXPECT_EQ(ended, 0);
    connection.reset();
    EXPECT_EQ(ended, 1);
    EXPECT_TRUE(fakes::inputs().empty());
}

} // namespace
} // namespace lumbrine
