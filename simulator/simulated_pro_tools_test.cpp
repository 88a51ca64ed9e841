#include "platform/virtual/memory_midi.h"
#include "platform/virtual/virtual_runtime.h"
#include "simulator/default_session.h"
#include "simulator/simulated_pro_tools.h"
#include "simulator/testing/host_bench.h"

namespace lumbrine {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

const Bytes mutePress{0xB0, 0x0F, 0x00, 0xB0, 0x2F, 0x42, 0xB0, 0x0F, 0x00, 0xB0, 0x2F, 0x02};

// The ports of a surface. Answers pings while the test wants it to, and keeps all other messages.
class TestSurface {
public:
    TestSurface(Runtime& runtime, MIDIServices& services, const std::string& name)
        : runtime(runtime), services(services), mutex(runtime) {
        MIDIClientRef client = 0;
        services.createClient(name, client);
        services.createSource(client, name, source);
        MIDIEndpointRef destination = 0;
        services.createDestination(client, name, [this](ByteView packet) { arrived(packet); }, destination);
    }

    void send(const Bytes& bytes) { services.received(source, bytes); }

    void setAnswering(bool answering) {
        Lock lock(mutex);
        answers = answering;
    }

    std::vector<Bytes> take() {
        Lock lock(mutex);
        return std::exchange(packets, {});
    }

    std::vector<TimePoint> takePings() {
        Lock lock(mutex);
        return std::exchange(pings, {});
    }

private:
    void arrived(ByteView bytes) {
        bool answer = false;
        {
            Lock lock(mutex);
            const Bytes packet(bytes.begin(), bytes.end());
            if (packet == ping) {
                pings.push_back(runtime.now());
                answer = answers;
            } else {
                packets.push_back(packet);
            }
        }
        if (answer) send(reply);
    }

    Runtime& runtime;
    MIDIServices& services;
    MIDIEndpointRef source = 0;
    Mutex mutex;
    bool answers LUMBRINE_GUARDED_BY(mutex) = true;
    std::vector<Bytes> packets LUMBRINE_GUARDED_BY(mutex);
    std::vector<TimePoint> pings LUMBRINE_GUARDED_BY(mutex);
};

class SimulatedProToolsTest : public testing::Test {
protected:
    SimulatedProTools& start(const SimulatorOptions& options, const SimulatedSession& session = numberedSession(20)) {
        host = std::make_unique<SimulatedProTools>(runtime, midi, options, session);
        return *host;
    }

    VirtualRuntime runtime;
    MemoryMIDI midi{runtime};
    TestSurface surface{runtime, midi, "Lumbrine"};
    TestSurface second{runtime, midi, "Lumbrine B"};
    std::unique_ptr<SimulatedProTools> host;
};

TEST_F(SimulatedProToolsTest, FindsTheSurfaceAndShowsItTheSession) {
    start({});
    runtime.runFor(seconds(0.019));
    EXPECT_FALSE(host->snapshot().surfaces[0].answering); // its reply has not been seen yet
    runtime.runFor(seconds(0.001));
    const SimulatorSnapshot snapshot = host->snapshot();
    ASSERT_EQ(snapshot.surfaces.size(), 1u);
    EXPECT_TRUE(snapshot.surfaces[0].connected);
    EXPECT_TRUE(snapshot.surfaces[0].answering);
    EXPECT_EQ(snapshot.surfaces[0].strips[7].display, "T08 ");
    EXPECT_EQ(snapshot.surfaces[0].strips[7].trackID, 8);
    EXPECT_EQ(snapshot.width, 8);
    EXPECT_EQ(snapshot.shownTracks, 20);
    EXPECT_THAT(surface.take(), Contains(Bytes{0xB0, 0x00, 0x60}));
    EXPECT_THAT(second.take(), IsEmpty());
}

TEST_F(SimulatedProToolsTest, PingsOnTheSecond) {
    start({});
    runtime.runFor(seconds(3));
    const TimePoint begin = runtime.now() - seconds(3);
    EXPECT_THAT(surface.takePings(), ElementsAre(begin, begin + seconds(1), begin + seconds(2), begin + seconds(3)));
}

TEST_F(SimulatedProToolsTest, ReactsAfterItsLatency) {
    SimulatorOptions options;
    options.latency = seconds(0.05);
    start(options);
    runtime.runFor(seconds(0.2));
    surface.take();
    surface.send(mutePress);
    runtime.runFor(seconds(0.049));
    EXPECT_THAT(surface.take(), IsEmpty());
    runtime.runFor(seconds(0.001));
    EXPECT_THAT(surface.take(), ElementsAre(Bytes{0xB0, 0x0C, 0x00}, Bytes{0xB0, 0x2C, 0x42}));
}

TEST_F(SimulatedProToolsTest, ShowsAnEditOnTheScreenAtOnce) {
    start({});
    runtime.runFor(seconds(0.2));
    surface.take();
    host->edit([](SimulatedSession& session) { session.rename(1, "Kick"); });
    EXPECT_EQ(host->session().find(1)->name, "Kick");
    runtime.runUntilIdle();
    EXPECT_THAT(surface.take(),
                ElementsAre(Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x00, 'K', 'i', 'c', 'k', 0xF7}));
    host->bank(BankButton::bankRight);
    runtime.runUntilIdle();
    EXPECT_EQ(host->snapshot().offset, 8);
    host->scrollTo(3);
    runtime.runUntilIdle();
    EXPECT_EQ(host->snapshot().surfaces[0].strips[0].display, "T04 ");
}

TEST_F(SimulatedProToolsTest, PlaysOnByItself) {
    start({}, defaultSession(8, 1));
    runtime.runFor(seconds(0.2));
    surface.take();
    host->edit([](SimulatedSession& session) { session.play(); });
    runtime.runFor(seconds(4));
    EXPECT_EQ(host->session().transport().position, seconds(4));
    std::vector<Bytes> meters = surface.take();
    std::erase_if(meters, [](const Bytes& packet) { return packet[0] != 0xA0; });
    EXPECT_GT(meters.size(), 300u);
}

TEST_F(SimulatedProToolsTest, FlashesOnTime) {
    start({});
    runtime.runFor(seconds(0.2));
    surface.take();
    host->edit(
        [](SimulatedSession& session) { session.change(1, [](SimulatedTrack& track) { track.recordArmed = true; }); });
    runtime.runFor(seconds(0.499));
    EXPECT_THAT(surface.take(), Not(Contains(Bytes{0xB0, 0x2C, 0x07})));
    runtime.runFor(seconds(0.001));
    EXPECT_THAT(surface.take(), Contains(Bytes{0xB0, 0x2C, 0x07}));
}

TEST_F(SimulatedProToolsTest, MakesOneBankOfTwoSurfacesAndLosesOneThatFallsSilent) {
    SimulatorOptions options;
    options.surfaces = 2;
    options.latency = Duration::zero();
    start(options);
    runtime.runFor(seconds(0.1));
    EXPECT_EQ(host->snapshot().width, 16);
    EXPECT_EQ(host->snapshot().surfaces[1].strips[0].display, "T09 ");
    second.setAnswering(false);
    runtime.runFor(seconds(3.899)); // the ping at 1 second stays open for 3 seconds
    EXPECT_EQ(host->snapshot().width, 16);
    runtime.runFor(seconds(0.001));
    EXPECT_EQ(host->snapshot().width, 8);
    second.setAnswering(true);
    runtime.runFor(seconds(1));
    EXPECT_EQ(host->snapshot().width, 16);
}

TEST_F(SimulatedProToolsTest, IsSilentToOneSurfaceForAWhile) {
    SimulatorOptions options;
    options.surfaces = 2;
    start(options);
    runtime.runFor(seconds(0.5));
    surface.takePings();
    second.takePings();
    host->silence(1, seconds(4.7));
    second.send(mutePress); // not heard
    runtime.runFor(seconds(4.6));
    EXPECT_EQ(surface.takePings().size(), 5u);
    EXPECT_THAT(second.takePings(), IsEmpty());
    EXPECT_EQ(host->snapshot().width, 8); // given up meanwhile
    EXPECT_FALSE(host->session().find(9)->mute);
    runtime.runFor(seconds(1));
    EXPECT_EQ(second.takePings().size(), 1u);
    EXPECT_EQ(host->snapshot().width, 16);
}

TEST_F(SimulatedProToolsTest, ShowsWhatChangedMeanwhileAsSoonAsItIsNoLongerSilent) {
    start({});
    runtime.runFor(seconds(0.1));
    surface.take();
    host->silence(0, seconds(0.3));
    host->edit([](SimulatedSession& session) { session.rename(1, "Kick"); });
    runtime.runFor(seconds(0.299));
    EXPECT_THAT(surface.take(), IsEmpty());
    runtime.runFor(seconds(0.001));
    EXPECT_EQ(surface.take().size(), 1u);
}

TEST_F(SimulatedProToolsTest, ReactsToEverythingOnceItIsNoLongerStuck) {
    start({});
    runtime.runFor(seconds(0.5));
    surface.take();
    surface.takePings();
    host->stick(seconds(5));
    surface.send(mutePress);
    surface.send({0xB0, 0x0F, 0x01, 0xB0, 0x2F, 0x43});
    runtime.runFor(seconds(4.999));
    EXPECT_THAT(surface.take(), IsEmpty());
    EXPECT_THAT(surface.takePings(), IsEmpty());
    runtime.runFor(seconds(0.001));
    EXPECT_TRUE(host->session().find(1)->mute);
    EXPECT_TRUE(host->session().find(2)->solo);
    EXPECT_EQ(surface.takePings().size(), 1u); // those it missed are not made up for
    runtime.runFor(seconds(0.499));
    EXPECT_THAT(surface.takePings(), IsEmpty());
    runtime.runFor(seconds(0.001));
    EXPECT_EQ(surface.takePings().size(), 1u); // on the second again
    EXPECT_TRUE(host->snapshot().surfaces[0].answering);
}

TEST_F(SimulatedProToolsTest, UsesThePortsOnlyOnceItHasGrabbedThem) {
    SimulatorOptions options;
    options.grabPortsAfter = seconds(7.25);
    start(options);
    runtime.runFor(seconds(7.249));
    EXPECT_THAT(surface.takePings(), IsEmpty());
    runtime.runFor(seconds(0.001));
    EXPECT_EQ(surface.takePings().size(), 1u);
    runtime.runFor(seconds(0.1));
    EXPECT_TRUE(host->snapshot().surfaces[0].answering);

    host->releasePorts();
    runtime.runFor(seconds(10));
    EXPECT_FALSE(host->snapshot().surfaces[0].answering);
    EXPECT_THAT(surface.takePings(), IsEmpty());
    host->grabPorts();
    runtime.runFor(seconds(0.1));
    EXPECT_EQ(surface.takePings().size(), 1u);
    EXPECT_TRUE(host->snapshot().surfaces[0].answering);
}

TEST_F(SimulatedProToolsTest, KeepsALogOfWhatItReceivedWithTimes) {
    SimulatorOptions options;
    options.logLimit = 3;
    start(options);
    runtime.runFor(seconds(0.25));
    surface.send({0xB0, 0x40, 0x41});
    runtime.runUntilIdle();
    std::vector<ReceivedPacket> log = host->received(0);
    ASSERT_EQ(log.size(), 2u);
    EXPECT_EQ(log[0].bytes, reply);
    EXPECT_EQ(log[1].bytes, (Bytes{0xB0, 0x40, 0x41}));
    EXPECT_EQ(log[1].at, runtime.now());
    for (int i = 0; i < 3; ++i)
        surface.send({0xB0, 0x40, 0x42});
    runtime.runUntilIdle();
    log = host->received(0);
    ASSERT_EQ(log.size(), 3u); // the oldest are gone
    EXPECT_EQ(log[0].bytes, (Bytes{0xB0, 0x40, 0x42}));
    EXPECT_EQ(host->snapshot().surfaces[0].packetsReceived, 5u);
    EXPECT_THAT(host->received(1), IsEmpty());
}

TEST_F(SimulatedProToolsTest, LetsARestlessUserActAndReplaysIt) {
    SimulatorOptions options;
    options.restlessUserEvery = seconds(2);
    options.seed = 5;
    const auto after = [&](std::uint64_t seed) {
        VirtualRuntime other;
        MemoryMIDI ports(other);
        SimulatorOptions seeded = options;
        seeded.seed = seed;
        SimulatedProTools restless(other, ports, seeded, numberedSession(20));
        other.runFor(seconds(120));
        return restless.session().tracks();
    };
    EXPECT_NE(after(5), numberedSession(20).tracks());
    EXPECT_EQ(after(5), after(5));
    EXPECT_NE(after(5), after(6));
}

TEST_F(SimulatedProToolsTest, KnowsWhichAutoSwitchesAreHeld) {
    start({});
    runtime.runFor(seconds(1));
    surface.send({0xB0, 0x0F, 0x02, 0xB0, 0x2F, 0x44});
    runtime.runFor(seconds(0.1));
    EXPECT_TRUE(host->snapshot().surfaces[0].strips[2].autoHeld);
    EXPECT_FALSE(host->snapshot().surfaces[0].strips[3].autoHeld);
    surface.send({0xB0, 0x0F, 0x02, 0xB0, 0x2F, 0x04});
    runtime.runFor(seconds(0.1));
    EXPECT_FALSE(host->snapshot().surfaces[0].strips[2].autoHeld);
}

TEST_F(SimulatedProToolsTest, IsWellBehavedOnceItRests) {
    SimulatorOptions options;
    options.dropOnePressIn = 1;
    options.restlessUserEvery = seconds(0.2);
    start(options);
    runtime.runFor(seconds(2));
    host->silence(0, seconds(60));
    host->stick(seconds(60));
    host->releasePorts();
    host->rest();
    runtime.runFor(seconds(2));
    EXPECT_TRUE(host->snapshot().surfaces[0].answering);

    const std::uint64_t dropped = host->snapshot().droppedPresses;
    const SimulatedTransport transport = host->snapshot().transport;
    surface.send({0xB0, 0x0F, 0x0E});
    surface.send({0xB0, 0x2F, static_cast<std::uint8_t>(transport.playing ? 0x43 : 0x44)});
    runtime.runFor(seconds(1));
    EXPECT_NE(host->snapshot().transport.playing, transport.playing);
    EXPECT_EQ(host->snapshot().droppedPresses, dropped);

    const std::vector<SimulatedTrack> tracks = host->session().tracks();
    const int offset = host->snapshot().offset;
    runtime.runFor(seconds(20));
    EXPECT_EQ(host->session().tracks(), tracks);
    EXPECT_EQ(host->snapshot().offset, offset);
}

TEST_F(SimulatedProToolsTest, HoldsAModeButtonWhoseEndItDidNotHearUntilItRests) {
    start({});
    runtime.runFor(seconds(1));
    const auto automation = [&] { return host->session().tracks()[2].automation; };
    const Bytes pressAuto{0xB0, 0x0F, 0x02, 0xB0, 0x2F, 0x44, 0xB0, 0x0F, 0x02, 0xB0, 0x2F, 0x04};
    const auto setRead = [](SimulatedSession& session) {
        session.changeAll([](SimulatedTrack& track) { track.automation = SimulatedTrack::Automation::read; });
    };
    surface.send({0xB0, 0x0F, 0x18, 0xB0, 0x2F, 0x41}); // latch
    runtime.runFor(seconds(0.1));
    surface.send(pressAuto);
    runtime.runFor(seconds(0.1));
    EXPECT_EQ(automation(), SimulatedTrack::Automation::latch);
    host->rest();
    host->edit(setRead);
    surface.send(pressAuto);
    runtime.runFor(seconds(0.1));
    EXPECT_EQ(automation(), SimulatedTrack::Automation::read);
}

TEST_F(SimulatedProToolsTest, CanGoAwayAtAnyMoment) {
    for (int i = 0; i < 40; ++i) {
        start({});
        runtime.runFor(seconds(0.01 * i));
        surface.send(mutePress);
        host.reset();
    }
    runtime.runFor(seconds(1));
}

TEST_F(SimulatedProToolsTest, RunsAlikeForTheSameSeedOfTheRuntime) {
    const auto traceOf = [](std::uint64_t seed) {
        VirtualRuntime::Options chosen;
        chosen.seed = seed;
        VirtualRuntime virtualTime(chosen);
        MemoryMIDI ports(virtualTime);
        TestSurface played(virtualTime, ports, "Lumbrine");
        SimulatedProTools simulated(virtualTime, ports, {}, defaultSession(20, 1));
        simulated.edit([](SimulatedSession& session) { session.play(); });
        virtualTime.runFor(seconds(5));
        return std::pair(virtualTime.traceHash(), played.take());
    };
    EXPECT_EQ(traceOf(3), traceOf(3));
}

} // namespace
} // namespace lumbrine
