// Decoding what Pro Tools sends, packet by packet. The peer is ALSA's MIDI decoder on the same bytes.
#include "base/testing/allocation_count.h"
#include "platform/virtual/still_runtime.h"
#include "surface/hui_engine.h"

#include <alsa/asoundlib.h>
#include <benchmark/benchmark.h>

namespace lumbrine {
namespace {

// One second of a busy surface: fader moves, LEDs, V-Pot rings, meters and pings, one message in each packet.
std::vector<Bytes> busyPackets() {
    std::vector<Bytes> packets;
    for (std::uint8_t step = 0; step < 64; ++step) {
        const auto strip = static_cast<std::uint8_t>(step % 8);
        packets.push_back({0xB0, strip, step});
        packets.push_back({0xB0, static_cast<std::uint8_t>(0x20 + strip), 0x40});
        packets.push_back({0xB0, 0x0C, strip});
        packets.push_back({0xB0, 0x2C, 0x42});
        packets.push_back({0xB0, static_cast<std::uint8_t>(0x10 + strip), 0x26});
        for (std::uint8_t meter = 0; meter < 8; ++meter)
            packets.push_back({0xA0, meter, 0x17});
    }
    return packets;
}

std::int64_t byteCount(const std::vector<Bytes>& packets) {
    std::int64_t count = 0;
    for (const Bytes& packet : packets)
        count += static_cast<std::int64_t>(packet.size());
    return count;
}

void huiDecodingOurs(benchmark::State& state) {
    StillRuntime runtime;
    const auto engine = std::make_shared<HUIEngine>(runtime, Bilingual(false));
    double heard = 0;
    engine->onFaderFeedback = [&](int, double value) { heard += value; };
    engine->onMeter = [&](int, int, int level) { heard += level; };
    engine->onLed = [&](int, int, bool on) { heard += on ? 1 : 0; };
    engine->onVpot = [&](int, int value, bool, bool) { heard += value; };
    const std::vector<Bytes> packets = busyPackets();

    const int before = allocationCount();
    for (auto _ : state)
        for (const Bytes& packet : packets)
            engine->handleIncoming(packet);
    state.counters["allocations"] = static_cast<double>(allocationCount() - before);
    state.SetBytesProcessed(state.iterations() * byteCount(packets));
    benchmark::DoNotOptimize(heard);
}

void huiDecodingPeer(benchmark::State& state) {
    snd_midi_event_t* decoder = nullptr;
    snd_midi_event_new(256, &decoder);
    const std::vector<Bytes> packets = busyPackets();
    double heard = 0;
    for (auto _ : state) {
        for (const Bytes& packet : packets) {
            snd_seq_event_t event{};
            const unsigned char* bytes = packet.data();
            auto left = static_cast<long>(packet.size());
            while (left > 0) {
                const long taken = snd_midi_event_encode(decoder, bytes, left, &event);
                if (taken <= 0) break;
                bytes += taken;
                left -= taken;
                if (event.type != SND_SEQ_EVENT_NONE) heard += event.data.control.value;
            }
        }
    }
    state.SetBytesProcessed(state.iterations() * byteCount(packets));
    benchmark::DoNotOptimize(heard);
    snd_midi_event_free(decoder);
}

BENCHMARK(huiDecodingOurs)->Name("HUI decoding per byte/ours");
BENCHMARK(huiDecodingPeer)->Name("HUI decoding per byte/peer");

} // namespace
} // namespace lumbrine
