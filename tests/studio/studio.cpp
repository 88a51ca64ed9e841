#include "tests/studio/studio.h"

#include "model/testing/session_columns.h"

#include <algorithm>

namespace lumbrine {

SimulatedSession numberedTracks(int count) {
    return tracksNamed(displayNames(count));
}

SimulatedSession tracksNamed(const std::vector<std::string>& names) {
    std::vector<SimulatedTrack> tracks(names.size());
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        tracks[i].name = names[i];
        tracks[i].fader = FaderValue::ofRaw(static_cast<std::uint16_t>(16 * (i % 1024)));
    }
    return SimulatedSession("Session", std::move(tracks));
}

std::vector<std::string> displayNames(int count) {
    std::vector<std::string> names;
    for (int i = 1; i <= count; ++i) {
        const std::string number = std::to_string(i);
        names.push_back(std::string(4 - number.size(), '0') + number);
    }
    return names;
}

std::vector<Press> bankPresses(HostEnd& surface) {
    // A press is the port's message with the bit for "on", after the zone's.
    std::vector<Press> pressed;
    bool bankZone = false;
    for (const std::string& message : surface.tape.takeBytes()) {
        if (message.starts_with("B0 0F")) bankZone = message == "B0 0F 0A";
        if (bankZone && message.starts_with("B0 2F 4")) pressed.push_back(static_cast<Press>(message.back() - '0'));
    }
    return pressed;
}

Studio::Studio(const SimulatedSession& session, const SimulatorOptions& options) {
    bench.start();
    proTools = std::make_unique<SimulatedProTools>(world.runtime, bench.midi, options, session);
}

bool Studio::mapSession(Duration limit) {
    return runUntil([this] { return shown().calibrating(); }, seconds(10)) &&
           runUntil([this] { return !shown().calibrating(); }, limit);
}

std::optional<Duration> Studio::untilQuiet(Duration limit) {
    const TimePoint begin = world.runtime.now();
    if (!runUntil([this] { return state().quiet(); }, limit)) return std::nullopt;
    return world.runtime.now() - begin;
}

std::vector<int> Studio::hostFaders() const {
    const SimulatedSession session = proTools->session();
    std::vector<int> faders;
    for (const SimulatedTrack& track : session.tracks())
        faders.push_back(track.fader.raw());
    return faders;
}

std::vector<int> Studio::mapFaders() {
    std::vector<int> faders;
    for (const std::optional<double>& fader : column(state().published.session, &Track::fader))
        faders.push_back(fader ? static_cast<int>(*fader * FaderValue::fullScale + 0.5) : -1);
    return faders;
}

long Studio::logged(const std::string& line) const {
    return std::ranges::count(bench.lines, line);
}

} // namespace lumbrine
