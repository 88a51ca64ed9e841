#include "tests/studio/seek_bench.h"

#include <utility>

namespace lumbrine {

SeekBench::SeekBench(int tracks, SimulatorOptions options) {
    options.redrawOnBank = false;
    options.runningStatus = true;
    options.mainDisplay = false;
    options.counter = false;
    parts.surfaces.startSurfaces();
    parts.state.published.huiConnected = true;
    parts.state.published.winW = stripsPerSurface * options.surfaces;
    parts.state.lastAutoPollAll = world.runtime.now() + std::chrono::hours(24); // no probes
    bench.setTrackMap(displayNames(tracks), -1);
    proTools =
        std::make_unique<SimulatedProTools>(world.runtime, bench.midi, std::move(options), numberedTracks(tracks));
    bench.run(seconds(1));
    bench.mark();
}

bool SeekBench::ends() {
    return world.runtime.runUntil([this] { return parts.state.quiet(); }, seconds(10));
}

bool SeekBench::reaches(int target) {
    seek(target);
    return ends() && hostOffset() == target && knownOffset() == target;
}

} // namespace lumbrine
