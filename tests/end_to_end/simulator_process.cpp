#include "tests/end_to_end/simulator_process.h"

#include "tests/interop/waiting.h"

#include <csignal>
#include <sstream>

namespace lumbrine::end_to_end {

namespace {

const std::string program = LUMBRINE_BIN_DIR "/lumbrine-simulator";

// "   3  0.720  M--*  mono    Snare Top", and so on from 1; what is left of an older list goes before.
std::vector<SimulatorProcess::Track> tracksIn(const std::string& text) {
    std::vector<SimulatorProcess::Track> tracks;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (lines.eof()) break; // not whole
        std::istringstream words(line);
        std::size_t number = 0;
        SimulatorProcess::Track track;
        std::string channels;
        if (!(words >> number >> track.fader >> track.lights >> channels >> std::ws)) continue;
        std::getline(words, track.name);
        if (number == tracks.size() + 1) tracks.push_back(track);
    }
    return tracks;
}

} // namespace

SimulatorProcess::SimulatorProcess(const std::vector<std::string>& options)
    : process(keyboard.command(program, options)) {}

bool SimulatorProcess::prints(const std::string& text) const {
    return interop::waitUntil([&] { return process.output().find(text) != std::string::npos; });
}

bool SimulatorProcess::end(std::chrono::milliseconds limit) {
    process.signal(SIGTERM);
    return process.wait(limit) == 0;
}

std::vector<SimulatorProcess::Track> SimulatorProcess::tracks(int count) {
    const std::size_t before = process.output().size();
    const auto wanted = static_cast<std::size_t>(count);
    keyboard.type("tracks");
    std::vector<Track> found;
    const auto areAllThere = [&] { return (found = tracksIn(process.output().substr(before))).size() >= wanted; };
    if (!interop::waitUntil(areAllThere)) return {};
    found.resize(wanted);
    return found;
}

std::optional<SimulatorProcess::Track> SimulatorProcess::track(int number) {
    const std::vector<Track> all = tracks(number);
    return all.empty() ? std::nullopt : std::optional(all.back());
}

} // namespace lumbrine::end_to_end
