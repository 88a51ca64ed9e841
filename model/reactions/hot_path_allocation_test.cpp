// The way of a fader move from the datagram to the MIDI port allocates nothing, and neither does the job that it leaves
// to the main thread.
#include "base/testing/allocation_count.h"
#include "model/receiver_parts.h"
#include "model/testing/model_world.h"
#include "platform/portable/nlohmann_json.h"
#include "platform/virtual/memory_screen.h"
#include "platform/virtual/virtual_streams.h"

namespace lumbrine {
namespace {

// Never on the main thread, whose jobs the test runs itself; one at a time.
class OtherThreadRuntime final : public Runtime {
public:
    Task job;

    TimePoint now() const override { return {}; }
    void sleepFor(Duration) override {}
    bool onMain() const override { return false; }
    void postMain(Task task) override { job = std::move(task); }
    void postMainAfter(Duration, Task) override {}
    void background(Priority, Task) override {}
    void backgroundAfter(Duration, Task) override {}
    std::unique_ptr<SerialQueue> serialQueue(std::string, Priority) override { return nullptr; }
    std::unique_ptr<RepeatingTimer> repeatOnMain(Duration, std::function<void()>) override { return nullptr; }
    std::unique_ptr<Thread> startThread(std::string, Task) override { return nullptr; }

protected:
    void runOnMainAndWait(Task) override {}
};

class CountingMIDI final : public MIDIServices {
public:
    int sent = 0;

    MIDIStatus createClient(const std::string&, MIDIClientRef& client) override { return client = 1, 0; }
    MIDIStatus createSource(MIDIClientRef, const std::string&, MIDIEndpointRef& source) override {
        return source = 1, 0;
    }
    MIDIStatus createDestination(MIDIClientRef, const std::string&, MIDIReadBlock, MIDIEndpointRef&) override {
        return 0;
    }
    MIDIStatus setUniqueID(MIDIEndpointRef, std::int32_t) override { return 0; }
    MIDIStatus received(MIDIEndpointRef, ByteView) override { return ++sent, 0; }
};

class HotPathAllocation : public testing::Test {
protected:
    HotPathAllocation() {
        parts.jobs.bind(owner);
        parts.surfaces.wire(listener);
        parts.surfaces.startSurfaces();
    }

    // How many allocations the datagram makes on its way to the ports.
    int allocationsOf(const Bytes& datagram) {
        const int before = allocationCount();
        parts.commands.handleUDP(datagram, {.key = "192.168.1.7:49152", .ownership = {}, .arrived = {}});
        return allocationCount() - before;
    }

    ModelWorld world;
    FakeComputer computer;
    OtherThreadRuntime runtime;
    CountingMIDI midi;
    VirtualStreams streams{world.runtime};
    NlohmannJSON json{Bilingual(false)};
    MemoryScreen screen;
    ReceiverParts parts{{runtime, midi, world.network.host("192.168.1.2"), computer, computer, streams, json, screen},
                        Configuration::read(computer),
                        Bilingual(false),
                        [](const std::string&) {}};
    std::shared_ptr<int> owner = std::make_shared<int>(0);
    std::weak_ptr<SurfaceListener> listener;
};

TEST_F(HotPathAllocation, IsSeenByThisTest) {
    const int before = allocationCount();
    const Bytes some(100);
    EXPECT_EQ(allocationCount(), before + 1);
}

TEST_F(HotPathAllocation, IsNotNeededForAMove) {
    EXPECT_EQ(allocationsOf({0x01, 0x01, 0x03, 0x3F, 0xFF}), 0);
    EXPECT_EQ(midi.sent, 2);
    runtime.job();
    EXPECT_EQ(parts.state.published.strips[3].fader, 1.0);
}

TEST_F(HotPathAllocation, IsNotNeededForATouchOrARelease) {
    EXPECT_EQ(allocationsOf({0x01, 0x02, 0x0B}), 0);
    EXPECT_EQ(midi.sent, 2);
    runtime.job();
    EXPECT_TRUE(parts.state.published.strips[11].touched);
    EXPECT_EQ(allocationsOf({0x01, 0x03, 0x0B}), 0);
    EXPECT_EQ(midi.sent, 4);
}

TEST_F(HotPathAllocation, IsNotNeededForAVpot) {
    EXPECT_EQ(allocationsOf({0x01, 0x07, 0x03, 0x01}), 0);
    EXPECT_EQ(midi.sent, 1);
}

TEST_F(HotPathAllocation, IsNotNeededForWhatIsDropped) {
    EXPECT_EQ(allocationsOf({0x01, 0x01, 0x03}), 0);
    EXPECT_EQ(allocationsOf({0x02, 0x01, 0x03, 0x3F, 0xFF}), 0);
}

} // namespace
} // namespace lumbrine
