// The input is what two surfaces send to the simulated host, in pieces. The byte before each piece has the surface in
// its top bit and the piece's length in the others; length 0 lets 0.3 s pass. The decoder must find the same messages
// whether the bytes come at once or one by one.
#include "fuzz/require.h"
#include "simulator/default_session.h"
#include "simulator/simulated_hui_host.h"

#include <algorithm>

namespace {

using namespace lumbrine;

void requireSameMeaningByteByByte(ByteView bytes) {
    std::vector<SurfaceMessage> whole, single;
    SurfaceDecoder wholeDecoder, singleDecoder;
    wholeDecoder.feed(bytes, [&](const SurfaceMessage& message) { whole.push_back(message); });
    for (const std::uint8_t& byte : bytes)
        singleDecoder.feed({&byte, 1}, [&](const SurfaceMessage& message) { single.push_back(message); });
    require(whole == single);
}

void requireInRange(const SimulatedSession& session, const SimulatedHUIHost& host) {
    require(host.offset() >= 0 && (host.width() == 8 || host.width() == 16));
    require(host.offset() <= std::max(0, static_cast<int>(session.shownTracks().size()) - host.width()));
    for (const SimulatedTrack& track : session.tracks())
        require(track.fader.raw() <= FaderValue::fullScale && track.panLeft >= -100 && track.panLeft <= 100 &&
                track.panRight >= -100 && track.panRight <= 100);
}

// Each outgoing packet is one MIDI message: a status byte first, data bytes (below 0x80) after it, SysEx ending in F7.
void requireWellFormed(const std::vector<SimulatedHUIHost::Outgoing>& outgoing) {
    for (const auto& [surface, packet] : outgoing) {
        require(surface >= 0 && surface < 2 && packet.size() >= 3 && packet[0] >= 0x80);
        const bool sysEx = packet[0] == 0xF0;
        require(sysEx == (packet.back() == 0xF7));
        require(std::all_of(packet.begin() + 1, packet.end() - (sysEx ? 1 : 0),
                            [](std::uint8_t byte) { return byte < 0x80; }));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    requireSameMeaningByteByByte({data, size});

    SimulatorOptions options;
    options.surfaces = 2;
    SimulatedSession session = defaultSession(21, 1);
    SimulatedHUIHost host(options, session);
    TimePoint now{};
    host.advance(now);
    for (ByteView rest(data, size); !rest.empty();) {
        const std::size_t length = std::min<std::size_t>(rest[0] & 0x7F, rest.size() - 1);
        if (length == 0) host.advance(now += seconds(0.3));
        host.receive(rest[0] >> 7, rest.subspan(1, length), now);
        requireInRange(session, host);
        requireWellFormed(host.takeOutgoing());
        rest = rest.subspan(1 + length);
    }
    return 0;
}
