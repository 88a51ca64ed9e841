#include "platform/recorded/recorded_midi.h"
#include "platform/recorded/testing/recording_bench.h"
#include "platform/virtual/null_platform.h"

namespace lumbrine {
namespace {

using blackbox::Kind;
using blackbox::PortEvent;
using blackbox::ResultHead;

struct Ports final : NullMIDI {
    MIDIStatus createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) override {
        return away ? -19 : NullMIDI::createSource(client, name, source);
    }
    MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                 MIDIEndpointRef& destination) override {
        reads.push_back(std::move(read));
        return NullMIDI::createDestination(client, name, {}, destination);
    }
    void onReturn(MIDIClientRef, std::function<void()> call) override { back = std::move(call); }
    void onService(std::function<void(bool)> call) override { service = std::move(call); }
    MIDIStatus received(MIDIEndpointRef, ByteView) override { return status; }

    std::vector<MIDIReadBlock> reads;
    std::function<void()> back;
    std::function<void(bool)> service;
    bool away = false;
    MIDIStatus status = 0;
};

struct RecordedMIDITest : testing::Test {
    // Two surfaces; what was recorded meanwhile is behind `begun`.
    void createBoth() {
        for (const char* name : {"Lumbrine", "Lumbrine B"}) {
            MIDIEndpointRef destination = 0;
            midi.createSource(1, name, sources.emplace_back());
            midi.createDestination(
                1, name, [this](ByteView packet) { arrived.emplace_back(packet.begin(), packet.end()); }, destination);
        }
    }

    std::vector<RecordingBench::Entry> ofKind(Kind kind) const {
        auto entries = bench.entries();
        std::erase_if(entries, [kind](const auto& entry) { return entry.kind != kind; });
        return entries;
    }

    RecordingBench bench;
    Ports real;
    RecordedMIDI midi{real, bench.recorder};
    std::vector<MIDIEndpointRef> sources;
    std::vector<Bytes> arrived;
};

TEST_F(RecordedMIDITest, RecordsPacketsBothWaysUnderTheNumberOfTheirSurface) {
    createBoth();
    real.reads[1](Bytes{0x90, 0x00, 0x00});
    midi.received(sources[0], Bytes{0xB0, 0x00, 0x10});
    real.status = -11;
    midi.received(sources[1], Bytes{0xB0, 0x20, 0x11});

    const auto in = ofKind(Kind::midiIn);
    ASSERT_EQ(in.size(), 1U);
    EXPECT_EQ(in[0].channel, 1);
    EXPECT_EQ(in[0].payload, (Bytes{0x90, 0x00, 0x00}));
    EXPECT_EQ(arrived, (std::vector<Bytes>{{0x90, 0x00, 0x00}}));
    const auto out = ofKind(Kind::midiOut);
    ASSERT_EQ(out.size(), 2U);
    EXPECT_EQ(out[0].channel, 0);
    EXPECT_EQ(out[0].head<ResultHead>().result, 0);
    EXPECT_EQ(out[0].behind<ResultHead>(), (Bytes{0xB0, 0x00, 0x10}));
    EXPECT_EQ(out[1].channel, 1);
    EXPECT_EQ(out[1].head<ResultHead>().result, -11);
}

TEST_F(RecordedMIDITest, RecordsThatAPortIsThereOrIsNot) {
    real.away = true;
    MIDIEndpointRef source = 0;
    EXPECT_EQ(midi.createSource(1, "Lumbrine", source), -19);
    real.away = false;
    EXPECT_EQ(midi.createSource(1, "Lumbrine", source), 0);
    const auto ports = ofKind(Kind::midiPort);
    ASSERT_EQ(ports.size(), 2U);
    EXPECT_EQ(ports[0].channel, static_cast<int>(PortEvent::source));
    EXPECT_EQ(ports[0].head<ResultHead>().result, -19);
    EXPECT_EQ(ports[0].textBehind<ResultHead>(), "Lumbrine");
    EXPECT_EQ(ports[1].head<ResultHead>().result, 0);
    midi.received(source, Bytes{0xFF});
    EXPECT_EQ(ofKind(Kind::midiOut).at(0).channel, 0) << "the number of a surface does not depend on failures";
}

TEST_F(RecordedMIDITest, RecordsThatThePortsAreBackAndThatTheServiceGoesAndComes) {
    int backs = 0;
    std::vector<bool> services;
    midi.onReturn(1, [&] { ++backs; });
    midi.onService([&](bool isThere) { services.push_back(isThere); });
    real.service(false);
    real.service(true);
    real.back();
    EXPECT_EQ(backs, 1);
    EXPECT_EQ(services, (std::vector{false, true}));
    const auto ports = ofKind(Kind::midiPort);
    ASSERT_EQ(ports.size(), 3U);
    EXPECT_EQ(ports[0].channel, static_cast<int>(PortEvent::serviceLost));
    EXPECT_EQ(ports[1].channel, static_cast<int>(PortEvent::serviceThere));
    EXPECT_EQ(ports[2].channel, static_cast<int>(PortEvent::returned));
}

} // namespace
} // namespace lumbrine
