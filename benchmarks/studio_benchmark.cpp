// The receiver beside the simulated Pro Tools in virtual time, with a client: how soon a mode is set while modes are
// being read, and how often modes are read while nobody does anything. Prints a JSON list.
#include "model/testing/model_bench.h"
#include "simulator/simulated_pro_tools.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

constexpr Duration limit = 200ms;
constexpr int settings = 200;
constexpr Duration rest = 10min;
constexpr Duration beforeTheModeKey = 50ms; // AUTO comes first

SimulatedSession sessionOfOneBank() {
    std::vector<SimulatedTrack> tracks(stripCount);
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        tracks[i].name = "Trk" + std::string(1, static_cast<char>('A' + i));
        tracks[i].automation = SimulatedTrack::Automation::read;
    }
    return SimulatedSession("One bank", std::move(tracks));
}

class Room {
public:
    explicit Room(AutoLED leds) {
        SimulatorOptions options;
        options.surfaces = 2;
        options.autoLED = leds;
        proTools = std::make_unique<SimulatedProTools>(world.runtime, bench.midi, options, sessionOfOneBank());
        bench.start();
        phone = bench.phone("192.168.1.7");
        run(60s); // its session is scanned and each mode was read
    }

    // With signs of life of the client.
    void run(Duration time) {
        for (; time > Duration::zero(); time -= 1s) {
            phone->send({0x01, 0x07, 0x00, 0x00});
            bench.run(std::min<Duration>(time, 1s));
        }
    }

    // From the datagram to the first key.
    Duration setMode(int strip, int button, Duration pollsRunFor) {
        for (int i = 0; i < stripCount; ++i)
            bench.parts().automation.pollAutoMode(*Strip::of(i));
        bench.run(pollsRunFor);
        bench.mark();
        phone->send({0x01, 0x0F, static_cast<std::uint8_t>(strip), static_cast<std::uint8_t>(button)});
        run(3s);
        HostEnd& surface = strip < stripsPerSurface ? bench.surfaceA : bench.surfaceB;
        for (const std::string& line : bench.heardOn(surface))
            if (line.ends_with("B0 0F 18")) return std::chrono::milliseconds(std::stoi(line)) - beforeTheModeKey;
        return Duration::max();
    }

    long probesIn(Duration time) {
        bench.mark();
        run(time);
        return autoKeys(bench.surfaceA) + autoKeys(bench.surfaceB);
    }

private:
    long autoKeys(HostEnd& surface) {
        return std::ranges::count_if(bench.heardOn(surface),
                                     [](const std::string& line) { return line.ends_with("B0 2F 44"); });
    }

    ModelWorld world{.runtime = NotingRuntime({.patience = 16})};
    ModelBench bench{world};
    std::unique_ptr<SimulatedProTools> proTools;
    std::unique_ptr<Phone> phone;
};

Duration longestWait() {
    Room room(AutoLED::unlit);
    Duration longest = Duration::zero();
    for (int i = 0; i < settings; ++i)
        longest = std::max(longest, room.setMode(i % stripCount, i % 2 == 0 ? 2 : 3, 7ms * (i % 61)));
    return longest;
}

} // namespace
} // namespace lumbrine

int main() {
    using namespace lumbrine;
    const auto milliseconds = [](Duration time) { return inSeconds(time) * 1000; };
    std::printf("[{\"name\": \"SetAutoMode to the first key, beside polls\", \"ours\": %.1f, \"limit\": %.0f, "
                "\"unit\": \"ms\"},\n",
                milliseconds(longestWait()), milliseconds(limit));
    std::printf(" {\"name\": \"probes in 10 min at rest, LEDs lit or dark\", \"ours\": %ld, \"peer\": %ld, "
                "\"unit\": \"\"}]\n",
                Room(AutoLED::green24).probesIn(rest), Room(AutoLED::unlit).probesIn(rest));
}
