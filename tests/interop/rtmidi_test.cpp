// The ports through RtMidi. Its ALSA needs a kernel with a sequencer, which test machines rarely have; its JACK runs
// the same code of ours.
#include "platform/linux/rtmidi_connections.h"
#include "platform/linux/rtmidi_services.h"
#include "tests/interop/jack_rig.h"

#include <jack/ringbuffer.h>

#include <mutex>

namespace lumbrine::interop {
namespace {

// Rings that RtMidi has given back. Never destroyed, as what is in it.
class KeptRings {
public:
    static KeptRings& all() {
        static auto* const rings = new KeptRings;
        return *rings;
    }
    void add(jack_ringbuffer_t* ring) {
        const std::lock_guard lock(mutex);
        rings.push_back(ring);
    }
    std::size_t count() {
        const std::lock_guard lock(mutex);
        return rings.size();
    }

private:
    std::mutex mutex;
    std::vector<jack_ringbuffer_t*> rings;
};

} // namespace
} // namespace lumbrine::interop

// RtMidi's output on JACK frees its ring before it closes the client whose realtime thread reads that ring, and now and
// then the thread finds it freed. So in this program, in the place of libjack's function, rings stay.
extern "C" void jack_ringbuffer_free(jack_ringbuffer_t* ring) {
    lumbrine::interop::KeptRings::all().add(ring);
}

namespace lumbrine::interop {
namespace {

class RtMidiPorts : public testing::Test {
protected:
    MIDIStatus createPorts() {
        MIDIClientRef client = 0;
        MIDIStatus status = services.createClient("Lumbrine", client);
        if (status == 0) status = services.createSource(client, "Lumbrine", source);
        if (status != 0) return status;
        MIDIEndpointRef destination = 0;
        return services.createDestination(client, "Lumbrine", atReceiver.asReceiver(), destination);
    }

    void send(ByteView message) { EXPECT_EQ(services.received(source, message), 0); }

    PrivateJack jack;
    RunLoop loop;
    RealRuntime runtime{loop};
    MIDIRecorder atReceiver;
    MIDIRecorder atHost;
    MIDIEndpointRef source = 0;
    RtMidiServices services{runtime, RtMidiSystem::jack};
    RtMidiConnections connections{runtime, RtMidiSystem::jack};
};

TEST_F(RtMidiPorts, CarryMessagesBothWaysUnaltered) {
    ASSERT_EQ(createPorts(), 0);
    const auto host = connections.connect("Lumbrine", atHost.asReceiver());
    ASSERT_NE(host, nullptr);
    ASSERT_TRUE(waitUntil([&] { return host->connected(); }));

    const std::vector<Bytes> messages{{0xFF},
                                      {0x90, 0x00, 0x00},
                                      {0x90, 0x00, 0x7F},
                                      {0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x03, 0x4B, 0x69, 0x63, 0x6B, 0xF7}};
    // The connection counts before JACK carries anything over it.
    ASSERT_TRUE(waitUntil([&] {
        send(Bytes{0xFE});
        host->send(Bytes{0xFE});
        return atHost.size() > 0 && atReceiver.size() > 0;
    }));
    for (const Bytes& message : messages) {
        send(message);
        host->send(message);
    }
    const auto withoutTheFirst = [&](MIDIRecorder& recorder) {
        waitUntil([&] { return recorder.waitFor(0).back() == messages.back(); });
        std::vector<Bytes> events = recorder.waitFor(0);
        std::erase(events, Bytes{0xFE});
        return events;
    };
    EXPECT_EQ(withoutTheFirst(atHost), messages);
    EXPECT_EQ(withoutTheFirst(atReceiver), messages);
}

TEST_F(RtMidiPorts, AreConnectedWhenTheyComeLaterAndAreMissedWhenTheyGo) {
    const auto host = connections.connect("Lumbrine", atHost.asReceiver());
    ASSERT_NE(host, nullptr);
    {
        RtMidiServices passing(runtime, RtMidiSystem::jack);
        MIDIClientRef client = 0;
        MIDIEndpointRef endpoint = 0;
        ASSERT_EQ(passing.createClient("Lumbrine", client), 0);
        ASSERT_EQ(passing.createSource(client, "Lumbrine", endpoint), 0);
        ASSERT_EQ(passing.createDestination(client, "Lumbrine", [](ByteView) {}, endpoint), 0);
        EXPECT_TRUE(waitUntil([&] { return host->connected(); }));
    }
    EXPECT_TRUE(waitUntil([&] { return !host->connected(); }));
}

TEST_F(RtMidiPorts, LeaveTheirRingToTheRealtimeThread) {
    const std::size_t before = KeptRings::all().count();
    {
        RtMidiServices passing(runtime, RtMidiSystem::jack);
        MIDIClientRef client = 0;
        ASSERT_EQ(passing.createClient("Lumbrine", client), 0);
        ASSERT_EQ(passing.createSource(client, "Lumbrine", source), 0);
    }
    EXPECT_EQ(KeptRings::all().count(), before + 1);
}

TEST_F(RtMidiPorts, OfALSAAreRefusedWithAStatusWhereItIsAbsent) {
    if (RtMidiServices::alsaAnswers()) GTEST_SKIP() << "this computer has ALSA's sequencer";
    RtMidiServices alsa(runtime);
    MIDIClientRef client = 0;
    EXPECT_NE(alsa.createClient("Lumbrine", client), 0);
    EXPECT_EQ(client, 0U);
    EXPECT_EQ(RtMidiConnections(runtime).connect("Lumbrine", atHost.asReceiver()), nullptr);
}

// A host that knows nothing of our own JACK code.
class ForeignHost : public testing::Test, public JackRig {};

TEST_F(ForeignHost, PlaysThroughThePortsOfTheJACKBackEnd) {
    ASSERT_EQ(createPorts(a), 0);
    RtMidiConnections foreign(runtime, RtMidiSystem::jack);
    const auto host = foreign.connect("Lumbrine", a.atHost.asReceiver());
    ASSERT_NE(host, nullptr);
    ASSERT_TRUE(waitUntil([&] { return host->connected(); }));
    EXPECT_TRUE(waitUntil([&] {
        send(a, Bytes{0x90, 0x00, 0x7F});
        host->send(Bytes{0x90, 0x00, 0x00});
        return a.atHost.size() > 0 && a.atReceiver.size() > 0;
    }));
    EXPECT_EQ(a.atHost.waitFor(1).front(), (Bytes{0x90, 0x00, 0x7F}));
    EXPECT_EQ(a.atReceiver.waitFor(1).front(), (Bytes{0x90, 0x00, 0x00}));
}

} // namespace
} // namespace lumbrine::interop
