#include "tests/end_to_end/simulator_process.h"

#include "tests/interop/waiting.h"

#include <csignal>
#include <sstream>

namespace lumbrine::end_to_end {

namespace {

const std::string program = LUMBRINE_BIN_DIR "/lumbrine-simulator";

// "   3  0.720  M--*  mono    Snare Top"
std::optional<SimulatorProcess::Track> trackIn(const std::string& text, int wanted) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (lines.eof()) break; // not whole
        std::istringstream words(line);
        int number = 0;
        SimulatorProcess::Track track;
        std::string channels;
        if (!(words >> number >> track.fader >> track.lights >> channels >> std::ws)) continue;
        std::getline(words, track.name);
        if (number == wanted) return track;
    }
    return std::nullopt;
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

std::optional<SimulatorProcess::Track> SimulatorProcess::track(int number) {
    const std::size_t before = process.output().size();
    keyboard.type("tracks");
    std::optional<Track> found;
    interop::waitUntil([&] {
        found = trackIn(process.output().substr(before), number);
        return found.has_value();
    });
    return found;
}

} // namespace lumbrine::end_to_end
