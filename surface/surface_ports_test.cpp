#include "platform/virtual/memory_midi.h"
#include "platform/virtual/virtual_runtime.h"
#include "surface/surface_wiring.h"

#include <algorithm>

namespace lumbrine {
namespace {

using Packets = std::vector<Bytes>;

// Ignores everything except pings, which it counts on the MIDI thread.
class PingListener final : public SurfaceListener {
public:
    void surfaceLog(const std::string&) override {}
    void faderFeedback(Strip, double) override {}
    void trackNameShown(Strip, std::string_view) override {}
    void meterShown(Strip, int, int) override {}
    void vpotShown(Strip, int, bool, bool) override {}
    void ledShown(SurfaceID, int, int, bool) override {}
    void autoLedShown(Strip, AutoLedColour) override {}
    void pingReceived(SurfaceID surface, int pingCount, TimePoint) override { pings.emplace_back(surface, pingCount); }

    std::vector<std::pair<SurfaceID, int>> pings;
};

// One surface on its own ports, and the program that is connected to them.
struct ConnectedSurface {
    ConnectedSurface(SurfaceID surface, Runtime& runtime, MemoryMIDI& midi, const std::string& name,
                     const std::shared_ptr<SurfaceListener>& listener)
        : engine(std::make_shared<HUIEngine>(runtime, Bilingual(false))),
          host(std::make_shared<MIDIHost>(runtime, midi, name, 1, 2)) {
        wireSurface(surface, engine, host, listener);
        EXPECT_TRUE(host->start());
        connection = midi.connect(name, [this](ByteView data) { heard.emplace_back(data.begin(), data.end()); });
    }

    std::shared_ptr<HUIEngine> engine;
    std::shared_ptr<MIDIHost> host;
    Packets heard;
    std::unique_ptr<MIDIConnection> connection;
};

class SurfacePorts : public ::testing::Test {
protected:
    VirtualRuntime runtime;
    MemoryMIDI midi{runtime};
    std::shared_ptr<PingListener> listener = std::make_shared<PingListener>();
    ConnectedSurface a{SurfaceID::A, runtime, midi, "Lumbrine", listener};
    ConnectedSurface b{SurfaceID::B, runtime, midi, "Lumbrine B", listener};
};

TEST_F(SurfacePorts, AnswerPingsOnTheirOwnPorts) {
    b.connection->send(Bytes{0x90, 0x00, 0x00});
    runtime.runFor(seconds(0.1));
    EXPECT_EQ(b.heard, (Packets{{0x90, 0x00, 0x7F}}));
    EXPECT_EQ(a.heard, Packets{});
    EXPECT_EQ(listener->pings, (std::vector<std::pair<SurfaceID, int>>{{SurfaceID::B, 1}}));
}

TEST_F(SurfacePorts, AnnounceBothSurfaces) {
    a.host->announcePresence(3);
    b.host->announcePresence(3);
    runtime.runFor(seconds(0.25));
    EXPECT_EQ(a.heard, (Packets{{0xFF}, {0xFF}, {0xFF}}));
    EXPECT_EQ(b.heard, (Packets{{0xFF}, {0xFF}, {0xFF}}));
}

TEST_F(SurfacePorts, CarryAPressAndItsReleaseOneMessageAPacket) {
    a.engine->pressSwitch(4, 3);
    runtime.runFor(seconds(0.07));
    EXPECT_EQ(a.heard, (Packets{{0xB0, 0x0F, 0x04}, {0xB0, 0x2F, 0x43}, {0xB0, 0x0F, 0x04}, {0xB0, 0x2F, 0x03}}));
}

TEST_F(SurfacePorts, StayAliveWhileEveryThreadIsBusy) {
    runtime.background(Priority::normal, [this] {
        for (int i = 0; i < 20; ++i)
            a.engine->channelMove(i % 4);
    });
    runtime.background(Priority::normal, [this] { a.engine->resetPanAssignToLeft(); });
    for (int i = 0; i < 20; ++i) {
        a.connection->send(Bytes{0x90, 0x00, 0x00});
        a.connection->send(Bytes{0xB0, 0x10, 0x4B});
        a.engine->flipPanSide();
        runtime.runFor(seconds(0.05));
        EXPECT_EQ(a.engine->pingCount, i + 1);
    }
    EXPECT_EQ(std::ranges::count(a.heard, Bytes{0x90, 0x00, 0x7F}), 20);
    EXPECT_EQ(a.heard.size(), 20u + 20 * 4 + 8);
}

} // namespace
} // namespace lumbrine
