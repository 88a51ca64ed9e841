#include "tests/end_to_end/simulator_process.h"

#include "tests/interop/waiting.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <sstream>
#include <stdexcept>

namespace lumbrine::end_to_end {

namespace {

const std::string program = LUMBRINE_BIN_DIR "/lumbrine-simulator";

std::string keyboardIn(const interop::TemporaryFolder& folder) {
    return folder.path / "keyboard";
}

int openKeyboard(const std::string& path) {
    if (::mkfifo(path.c_str(), 0600) != 0) throw std::runtime_error("no pipe");
    return ::open(path.c_str(), O_RDWR | O_CLOEXEC);
}

std::vector<std::string> command(const std::string& input, const std::vector<std::string>& options) {
    std::vector<std::string> words{"sh", "-c", "exec < \"$0\"; exec \"$@\"", input, program};
    words.insert(words.end(), options.begin(), options.end());
    return words;
}

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
    : keyboard(openKeyboard(keyboardIn(folder))), process(command(keyboardIn(folder), options)) {}

SimulatorProcess::~SimulatorProcess() {
    ::close(keyboard);
}

void SimulatorProcess::type(const std::string& line) {
    const std::string typed = line + "\n";
    if (::write(keyboard, typed.data(), typed.size()) != static_cast<ssize_t>(typed.size()))
        throw std::runtime_error("the simulator does not read");
}

bool SimulatorProcess::prints(const std::string& text) const {
    return interop::waitUntil([&] { return process.output().find(text) != std::string::npos; });
}

void SimulatorProcess::end() {
    process.signal(SIGTERM);
    process.wait(interop::patience);
}

std::optional<SimulatorProcess::Track> SimulatorProcess::track(int number) {
    const std::size_t before = process.output().size();
    type("tracks");
    std::optional<Track> found;
    interop::waitUntil([&] {
        found = trackIn(process.output().substr(before), number);
        return found.has_value();
    });
    return found;
}

} // namespace lumbrine::end_to_end
