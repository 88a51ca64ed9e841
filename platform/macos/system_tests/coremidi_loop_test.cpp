// Our ports in the real CoreMIDI, as another program sees them.
#include "platform/macos/coremidi_connections.h"
#include "platform/macos/coremidi_services.h"
#include "platform/macos/dispatch_main_loop.h"
#include "platform/macos/system_tests/main_queue.h"
#include "platform/posix/real_runtime.h"

#include <CoreMIDI/CoreMIDI.h>

#include <atomic>
#include <cstring>
#include <mutex>

namespace lumbrine {
namespace {

constexpr std::int32_t sourceID = 0x4C6D5431;
constexpr std::int32_t destinationID = 0x4C6D5432;

// Another program: it listens to our source, and sends to our destination.
class Neighbour {
public:
    struct Packet {
        MIDITimeStamp stamp;
        Bytes bytes;
    };

    Neighbour() {
        EXPECT_EQ(::MIDIClientCreateWithBlock(CFSTR("Lumbrine test"), &client, nullptr), 0);
        EXPECT_EQ(::MIDIInputPortCreateWithBlock(client, CFSTR("in"), &in,
                                                 ^(const ::MIDIPacketList* list, void* /*origin*/) {
                                                   keep(*list);
                                                 }),
                  0);
        EXPECT_EQ(::MIDIOutputPortCreate(client, CFSTR("out"), &out), 0);
    }
    ~Neighbour() { ::MIDIClientDispose(client); }
    Neighbour(const Neighbour&) = delete;
    Neighbour& operator=(const Neighbour&) = delete;

    static ::MIDIEndpointRef find(std::int32_t uniqueID) {
        ::MIDIObjectRef object = 0;
        ::MIDIObjectType type = kMIDIObjectType_Other;
        EXPECT_EQ(::MIDIObjectFindByUniqueID(uniqueID, &object, &type), 0);
        return object;
    }

    void listenTo(std::int32_t uniqueID) { EXPECT_EQ(::MIDIPortConnectSource(in, find(uniqueID), nullptr), 0); }

    void sendTo(std::int32_t uniqueID, const Bytes& bytes) {
        std::array<std::uint8_t, 512> memory{};
        auto* const list = reinterpret_cast<::MIDIPacketList*>(memory.data());
        ::MIDIPacket* const first = ::MIDIPacketListInit(list);
        ASSERT_NE(::MIDIPacketListAdd(list, memory.size(), first, 0, bytes.size(), bytes.data()), nullptr);
        EXPECT_EQ(::MIDISend(out, find(uniqueID), list), 0);
    }

    std::vector<Packet> heard() {
        const std::lock_guard held(lock);
        return packets;
    }

private:
    void keep(const ::MIDIPacketList& list) {
        const std::lock_guard held(lock);
        const ::MIDIPacket* packet = &list.packet[0];
        for (std::uint32_t i = 0; i < list.numPackets; ++i, packet = ::MIDIPacketNext(packet)) {
            MIDITimeStamp stamp = 0;
            std::uint16_t length = 0;
            const auto* const begin = reinterpret_cast<const std::uint8_t*>(packet);
            std::memcpy(&stamp, begin + offsetof(::MIDIPacket, timeStamp), sizeof stamp);
            std::memcpy(&length, begin + offsetof(::MIDIPacket, length), sizeof length);
            const auto* const data = begin + offsetof(::MIDIPacket, data);
            packets.push_back({stamp, Bytes(data, data + length)});
        }
    }

    ::MIDIClientRef client = 0;
    ::MIDIPortRef in = 0;
    ::MIDIPortRef out = 0;
    std::mutex lock;
    std::vector<Packet> packets;
};

class CoreMIDILoopTest : public testing::Test {
protected:
    CoreMIDILoopTest() {
        EXPECT_EQ(services.createClient("Lumbrine test ports", client), 0);
        EXPECT_EQ(services.createSource(client, "Lumbrine test", source), 0);
        const auto read = [this](ByteView packet) {
            const std::lock_guard held(lock);
            arrived.insert(arrived.end(), packet.begin(), packet.end());
        };
        EXPECT_EQ(services.createDestination(client, "Lumbrine test", read, destination), 0);
        EXPECT_EQ(services.setUniqueID(source, sourceID), 0);
        EXPECT_EQ(services.setUniqueID(destination, destinationID), 0);
    }
    ~CoreMIDILoopTest() override { runtime.shutDown(); }

    Bytes takeArrived() {
        const std::lock_guard held(lock);
        return arrived;
    }

    DispatchMainLoop loop{[] {}};
    RealRuntime runtime{loop};
    std::mutex lock;
    Bytes arrived;
    CoreMIDIServices services{runtime};
    MIDIClientRef client = 0;
    MIDIEndpointRef source = 0;
    MIDIEndpointRef destination = 0;
    Neighbour neighbour;
};

TEST_F(CoreMIDILoopTest, TenThousandMessagesArriveInOrderAndStamped) {
    constexpr int count = 10'000;
    neighbour.listenTo(sourceID);
    for (int i = 0; i < count; ++i)
        ASSERT_EQ(services.received(source, Bytes{0xB0, static_cast<std::uint8_t>(i >> 7 & 0x7F),
                                                  static_cast<std::uint8_t>(i & 0x7F)}),
                  0);
    Bytes all;
    const auto hasAll = [&] {
        all.clear();
        for (const auto& packet : neighbour.heard())
            all.insert(all.end(), packet.bytes.begin(), packet.bytes.end());
        return all.size() >= 3 * count;
    };
    ASSERT_TRUE(runMainQueueUntil(hasAll));
    for (std::size_t i = 0; i < count; ++i)
        ASSERT_EQ((all[3 * i + 1] << 7) + all[3 * i + 2], i % 0x4000) << "message " << i;
    MIDITimeStamp last = 1;
    for (const auto& packet : neighbour.heard()) {
        ASSERT_GE(packet.stamp, last);
        last = packet.stamp;
    }
}

TEST_F(CoreMIDILoopTest, WhatIsSentToOurPortArrives) {
    const Bytes name{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x00, 'K', 'i', 'c', 'k', 0xF7};
    neighbour.sendTo(destinationID, {0x90, 0x00, 0x00});
    neighbour.sendTo(destinationID, name);
    Bytes expected{0x90, 0x00, 0x00};
    expected.insert(expected.end(), name.begin(), name.end());
    EXPECT_TRUE(runMainQueueUntil([&] { return takeArrived().size() >= expected.size(); }));
    EXPECT_EQ(takeArrived(), expected);
}

TEST_F(CoreMIDILoopTest, AnIDThatIsTakenIsRefused) {
    MIDIEndpointRef another = 0;
    ASSERT_EQ(services.createSource(client, "another", another), 0);
    EXPECT_EQ(services.setUniqueID(another, sourceID), kMIDIIDNotUnique);
}

TEST_F(CoreMIDILoopTest, AConnectionFindsOurPortsByTheirNameAndCarriesBothWays) {
    std::atomic<int> heard = 0;
    CoreMIDIConnections connections(runtime);
    const auto connection =
        connections.connect("Lumbrine test", [&heard](ByteView bytes) { heard += static_cast<int>(bytes.size()); });
    ASSERT_TRUE(runMainQueueUntil([&] { return connection->connected(); }));
    connection->send(Bytes{0x90, 0x00, 0x00});
    services.received(source, Bytes{0x90, 0x00, 0x7F});
    EXPECT_TRUE(runMainQueueUntil([&] { return heard == 3 && takeArrived().size() == 3; }));
}

} // namespace
} // namespace lumbrine
