// For tests: the host with a clock that the test moves; the test also passes bytes in and takes them out.
#pragma once

#include "simulator/simulated_hui_host.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

namespace lumbrine {

inline const Bytes ping{0x90, 0x00, 0x00};
inline const Bytes reply{0x90, 0x00, 0x7F};

// `count` tracks named "T01", "T02" and so on.
inline SimulatedSession numberedSession(int count) {
    std::vector<SimulatedTrack> tracks(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        tracks[static_cast<std::size_t>(i)].name = (i < 9 ? "T0" : "T") + std::to_string(i + 1);
    return SimulatedSession("Test", std::move(tracks));
}

class HostBench {
public:
    explicit HostBench(const SimulatedSession& start, SimulatorOptions chosen = {})
        : options(std::move(chosen)), session(start), host(options, session) {}

    // Lets time pass, stopping at each deadline as the real driver does.
    void runFor(Duration time) {
        const TimePoint end = now + time;
        host.advance(now);
        while (host.nextDeadline() < end) {
            now = std::max(now, host.nextDeadline());
            host.advance(now);
            collect();
        }
        now = end;
        host.advance(now);
        collect();
    }

    void receive(int surface, const Bytes& bytes) {
        host.receive(surface, bytes, now);
        collect();
    }

    // Makes all surfaces answer their first ping, and drops the resulting packets.
    void appear() {
        runFor(Duration::zero());
        for (int surface = 0; surface < options.surfaces; ++surface)
            receive(surface, {0x90, 0x00, 0x7F});
        clear();
    }

    // Like `runFor`, but answers every ping and does not keep the pings.
    void live(Duration time) {
        const TimePoint end = now + time;
        while (now < end) {
            runFor(std::min(end - now, Duration(seconds(0.001))));
            for (int surface = 0; surface < options.surfaces; ++surface) {
                auto& packets = sent[static_cast<std::size_t>(surface)];
                if (std::erase(packets, Bytes{0x90, 0x00, 0x00}) > 0) receive(surface, {0x90, 0x00, 0x7F});
            }
        }
    }

    void press(int surface, int zone, int port) {
        edge(surface, zone, port, true);
        edge(surface, zone, port, false);
    }

    void edge(int surface, int zone, int port, bool on) {
        receive(surface, {0xB0, 0x0F, static_cast<std::uint8_t>(zone)});
        receive(surface, {0xB0, 0x2F, static_cast<std::uint8_t>((on ? 0x40 : 0) | port)});
    }

    // An edit on the host's own screen.
    template <typename Edit>
    void edit(Edit change) {
        change(session);
        runFor(Duration::zero());
    }

    // The packets sent to a surface since the last take.
    std::vector<Bytes> take(int surface = 0) { return std::exchange(sent[static_cast<std::size_t>(surface)], {}); }

    Bytes takeJoined(int surface = 0) {
        Bytes joined;
        for (const Bytes& packet : take(surface))
            joined.insert(joined.end(), packet.begin(), packet.end());
        return joined;
    }

    void clear() {
        for (auto& packets : sent)
            packets.clear();
    }

    // The displays of a surface's strips, four characters each.
    std::string names(int surface = 0) const {
        std::string all;
        const SurfacePicture picture = host.picture(surface);
        for (std::size_t strip = 0; strip < hui_address::stripCountOfSurface; ++strip)
            all.append(picture.displays[strip].begin(), picture.displays[strip].end());
        return all;
    }

    const SimulatorOptions options;
    SimulatedSession session;
    SimulatedHUIHost host;
    TimePoint now{};

private:
    void collect() {
        for (auto& [surface, packet] : host.takeOutgoing())
            sent[static_cast<std::size_t>(surface)].push_back(std::move(packet));
    }

    std::array<std::vector<Bytes>, 2> sent;
};

} // namespace lumbrine
