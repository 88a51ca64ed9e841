// From two datagrams in memory to three MIDI messages: owner check, decoding, HUI encoding. The peer is liblo, which
// dispatches OSC messages with the same content. And from a sealed datagram to its two MIDI messages.
#include "base/testing/allocation_count.h"
#include "client_link/udp_server.h"
#include "model/receiver_parts.h"
#include "platform/linux/openssl_secrets.h"
#include "platform/portable/nlohmann_json.h"
#include "platform/portable/no_accessibility.h"
#include "platform/virtual/null_platform.h"
#include "platform/virtual/still_runtime.h"
#include "seal/client_seal.h"

#include <benchmark/benchmark.h>
#include <lo/lo.h>

namespace lumbrine {
namespace {

// A receiver in memory: what a datagram causes, up to the MIDI messages.
struct Receiver {
    Receiver() {
        parts.surfaces.engine(SurfaceID::A).send = [this](ByteView) { ++messages; };
        server.onDatagram = [this](ByteView bytes, const Sender& sender) { parts.commands.handleUDP(bytes, sender); };
    }

    // Keeps what the server sends last.
    class Sockets final : public NullDatagrams {
    public:
        int send(int, ByteView bytes, const PeerAddress&) override {
            last.assign(bytes.begin(), bytes.end());
            return static_cast<int>(bytes.size());
        }

        Bytes last;
    };

    StillRuntime runtime;
    NullMIDI midi;
    Sockets sockets;
    NullAdvertiser advertiser;
    const NullComputer system{{{"QV_PORT", "0"}, {"QV_NO_BONJOUR", "1"}}};
    NullStreams streams;
    NlohmannJSON json{Bilingual(false)};
    NoAccessibility accessibility;
    ReceiverParts parts{{runtime, midi, sockets, advertiser, system, streams, json, accessibility},
                        Configuration::read(system),
                        Bilingual(false),
                        [](const std::string&) {}};
    UDPServer server{runtime, sockets, 0};
    std::uint64_t messages = 0;
};

const Bytes faderMove{0x01, 0x01, 0x03, 0x20, 0x00};

void datagramsOurs(benchmark::State& state) {
    Receiver receiver;
    const Bytes turn{0x01, 0x07, 0x03, 0x02};
    const PeerAddress phone;
    receiver.server.handleDatagram(faderMove, phone);

    const int before = allocationCount();
    receiver.messages = 0;
    for (auto _ : state) {
        receiver.server.handleDatagram(faderMove, phone);
        receiver.server.handleDatagram(turn, phone);
    }
    state.counters["allocations"] = static_cast<double>(allocationCount() - before);
    if (receiver.messages != 3 * static_cast<std::uint64_t>(state.iterations()))
        state.SkipWithError("not three messages for each pair of datagrams");
}

constexpr benchmark::IterationCount sealedMoves = 20'000;

// The moves of a client in a session, made before they are measured: sealing is the client's work.
void sealedDatagrams(benchmark::State& state) {
    Receiver receiver;
    UDPServer& server = receiver.server;
    OpenSSLSecrets secrets;
    const PairingKey key = *PairingKey::parse("742BCM0SCXPZA154Z02S9P89HC");
    seal::ClientSeal client(secrets, key);
    const PeerAddress phone;
    const Bytes hello{0x01, 0x00, 0, 0, 0, 0, 0, 0, 0, 7};
    const TimePoint now = receiver.runtime.now();
    const auto copyOf = [](ByteView bytes) { return Bytes(bytes.begin(), bytes.end()); };
    server.useSeals(secrets);
    server.setKeys({key});
    server.handleDatagram(copyOf(client.outgoing(hello, now)), phone);
    server.handleDatagram(copyOf(client.incoming(receiver.sockets.last, now).reply), phone);
    std::vector<Bytes> moves;
    for (benchmark::IterationCount i = 0; i <= sealedMoves; ++i)
        moves.push_back(copyOf(client.outgoing(faderMove, now)));
    auto next = moves.cbegin();
    server.handleDatagram(*next++, phone);

    const int before = allocationCount();
    receiver.messages = 0;
    for (auto _ : state)
        server.handleDatagram(*next++, phone);
    state.counters["allocations"] = static_cast<double>(allocationCount() - before);
    if (receiver.messages != 2 * static_cast<std::uint64_t>(state.iterations()))
        state.SkipWithError("not two messages for each datagram");
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
BENCHMARK(sealedDatagrams)->Name("sealed datagram to MIDI (processor)/ours")->Iterations(sealedMoves);
BENCHMARK(datagramsPeer)->Name("two datagrams to three MIDI messages/peer");

} // namespace
} // namespace lumbrine
