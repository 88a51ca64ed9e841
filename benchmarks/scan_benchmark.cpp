// A scan of 1,000 tracks in virtual time, beside the simulated Pro Tools: how many presses and how long it takes, with
// a track list and without one. Prints a JSON list.
#include "model/testing/model_bench.h"
#include "simulator/simulated_pro_tools.h"

#include <chrono>
#include <cstdio>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

constexpr int trackCount = 1000;
constexpr Duration longest = 300s;

// Beside a press for each bank: a bank and a channel key that find the top, one that finds the end, and where the last
// bank does not tell how far it lies behind the one before, one channel back and two on.
constexpr int otherPresses = 6;

// A press, a quiet wait and a look at the displays, which takes two samples; twice 1.1 s for the two ends.
constexpr double secondsOfABank = 0.40;
constexpr double otherSeconds = 6.0;

std::string nameOf(int track) {
    std::string number = std::to_string(track + 1);
    return std::string(4 - number.size(), '0') + number;
}

struct Cost {
    long presses;
    double seconds;
};

class Room {
public:
    Room(int surfaces, bool hasList) {
        std::vector<SimulatedTrack> tracks(trackCount);
        TrackMetadata::TrackList list(trackCount);
        for (std::size_t i = 0; i < tracks.size(); ++i) {
            tracks[i].name = nameOf(static_cast<int>(i));
            list[i].name = tracks[i].name;
            list[i].id = "id " + list[i].name;
        }
        SimulatorOptions options;
        options.surfaces = surfaces;
        proTools = std::make_unique<SimulatedProTools>(world.runtime, bench.midi, options,
                                                       SimulatedSession("Large", std::move(tracks)));
        bench.start();
        if (hasList) bench.parts().metadata.takeList(list);
    }

    // Until the map is there.
    Cost scan() {
        world.runtime.runUntil([this] { return bench.state().published.calibrating(); }, longest);
        bench.mark();
        const TimePoint begin = world.runtime.now();
        world.runtime.runUntil([this] { return !bench.state().published.session.empty(); }, longest);
        return {presses(), inSeconds(world.runtime.now() - begin)};
    }

private:
    long presses() {
        long count = 0;
        for (const std::string& line : bench.heardOn(bench.surfaceA))
            for (const char* key : {"B0 2F 40", "B0 2F 41", "B0 2F 42", "B0 2F 43"})
                count += line.ends_with(key) ? 1 : 0;
        return count;
    }

    ModelWorld world{.runtime = NotingRuntime({.patience = 16})};
    ModelBench bench{world};
    std::unique_ptr<SimulatedProTools> proTools;
};

void print(int surfaces, bool hasList, bool isLast) {
    const int banks = (trackCount + surfaces * stripsPerSurface - 1) / (surfaces * stripsPerSurface);
    const Cost cost = Room(surfaces, hasList).scan();
    const char* const list = hasList ? "list" : "no list";
    std::printf("{\"name\": \"presses of a scan, 1000 tracks, %d strips, %s\", \"ours\": %ld, \"limit\": %d, "
                "\"unit\": \"\"},\n",
                surfaces * stripsPerSurface, list, cost.presses, banks + otherPresses);
    std::printf("{\"name\": \"scan of 1000 tracks, %d strips, %s\", \"ours\": %.1f, \"limit\": %.1f, "
                "\"unit\": \"s\"}%s\n",
                surfaces * stripsPerSurface, list, cost.seconds, banks * secondsOfABank + otherSeconds,
                isLast ? "" : ",");
}

} // namespace
} // namespace lumbrine

int main() {
    std::printf("[");
    for (const int surfaces : {1, 2})
        for (const bool hasList : {true, false})
            lumbrine::print(surfaces, hasList, surfaces == 2 && !hasList);
    std::printf("]\n");
}
