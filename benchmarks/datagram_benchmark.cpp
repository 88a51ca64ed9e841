// From two datagrams in memory to three MIDI messages: owner check, decoding, HUI encoding. The peer is liblo, which
// dispatches OSC messages with the same content.
#include "base/testing/allocation_count.h"
#include "client_link/udp_server.h"
#include "model/receiver_parts.h"
#include "platform/portable/nlohmann_json.h"
#include "platform/portable/no_accessibility.h"
#include "platform/virtual/null_platform.h"
#include "platform/virtual/still_runtime.h"

#include <benchmark/benchmark.h>
#include <lo/lo.h>

namespace lumbrine {
namespace {

void datagramsOurs(benchmark::State& state) {
    StillRuntime runtime;
    NullMIDI midi;
    NullDatagrams sockets;
    NullAdvertiser advertiser;
    const NullComputer system{{{"QV_PORT", "0"}, {"QV_NO_BONJOUR", "1"}}};
    NullStreams streams;
    NlohmannJSON json{Bilingual(false)};
    NoAccessibility accessibility;
    ReceiverParts parts({runtime, midi, sockets, advertiser, system, streams, json, accessibility},
                        Configuration::read(system), Bilingual(false), [](const std::string&) {});
    std::uint64_t messages = 0;
    parts.surfaces.engine(SurfaceID::A).send = [&](ByteView) { ++messages; };
    UDPServer server(runtime, sockets, 0);
    server.onDatagram = [&](ByteView bytes, const Sender& sender) { parts.commands.handleUDP(bytes, sender); };

    const Bytes move{0x01, 0x01, 0x03, 0x20, 0x00};
    const Bytes turn{0x01, 0x07, 0x03, 0x02};
    const PeerAddress phone;
    server.handleDatagram(move, phone);

    const int before = allocationCount();
    messages = 0;
    for (auto _ : state) {
        server.handleDatagram(move, phone);
        server.handleDatagram(turn, phone);
    }
    state.counters["allocations"] = static_cast<double>(allocationCount() - before);
    if (messages != 3 * static_cast<std::uint64_t>(state.iterations()))
        state.SkipWithError("not three messages for each pair of datagrams");
}

int onMove(const char*, const char*, lo_arg** arguments, int, lo_message, void* heard) {
    *static_cast<double*>(heard) += static_cast<double>(arguments[0]->i) + static_cast<double>(arguments[1]->f);
    return 0;
}

int onTurn(const char*, const char*, lo_arg** arguments, int, lo_message, void* heard) {
    *static_cast<double*>(heard) += arguments[0]->i + arguments[1]->i;
    return 0;
}

Bytes serialised(lo_message message, const char* path) {
    Bytes bytes(lo_message_length(message, path));
    std::size_t size = bytes.size();
    lo_message_serialise(message, path, bytes.data(), &size);
    lo_message_free(message);
    return bytes;
}

void datagramsPeer(benchmark::State& state) {
    lo_server server = lo_server_new(nullptr, nullptr);
    double heard = 0;
    lo_server_add_method(server, "/fader", "if", onMove, &heard);
    lo_server_add_method(server, "/vpot", "ii", onTurn, &heard);
    lo_message moveMessage = lo_message_new();
    lo_message_add_int32(moveMessage, 3);
    lo_message_add_float(moveMessage, 0.5F);
    Bytes move = serialised(moveMessage, "/fader");
    lo_message turnMessage = lo_message_new();
    lo_message_add_int32(turnMessage, 3);
    lo_message_add_int32(turnMessage, 2);
    Bytes turn = serialised(turnMessage, "/vpot");

    for (auto _ : state) {
        lo_server_dispatch_data(server, move.data(), move.size());
        lo_server_dispatch_data(server, turn.data(), turn.size());
    }
    benchmark::DoNotOptimize(heard);
    lo_server_free(server);
}

BENCHMARK(datagramsOurs)->Name("two datagrams to three MIDI messages/ours");
BENCHMARK(datagramsPeer)->Name("two datagrams to three MIDI messages/peer");

} // namespace
} // namespace lumbrine
