// For tests: lumbrine-simulator as a separate process, with the test at its keyboard.
#pragma once

#include "tests/end_to_end/keyboard.h"

#include <optional>
#include <string>
#include <vector>

namespace lumbrine::end_to_end {

class SimulatorProcess {
public:
    // A track in the simulator's list.
    struct Track {
        double fader = 0;
        std::string lights; // mute, solo, record, select: "M--*"
        std::string name;
    };

    // Uses the same JACK server as this process. `options` are for its command line.
    explicit SimulatorProcess(const std::vector<std::string>& options);

    void type(const std::string& line) { keyboard.type(line); }

    // Waits until it has printed `text`.
    bool prints(const std::string& text) const;

    // The current state of the first `count` tracks; empty when the simulator does not list them.
    std::vector<Track> tracks(int count);

    // The current state of a track, counted from 1.
    std::optional<Track> track(int number);

    // Ends it as its user would. True when it ends in order and in time. (After a client was killed, the JACK server
    // itself hangs for a long time.)
    bool end(std::chrono::milliseconds limit = interop::patience);

    std::string output() const { return process.output(); }
    pid_t id() const { return process.id(); }

private:
    Keyboard keyboard;
    interop::ChildProcess process;
};

} // namespace lumbrine::end_to_end
