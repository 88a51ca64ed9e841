// lumbrine-simulator as a process of its own, with the test at its keyboard.
#pragma once

#include "tests/end_to_end/keyboard.h"

#include <optional>
#include <string>
#include <vector>

namespace lumbrine::end_to_end {

class SimulatorProcess {
public:
    // A track as the simulator lists it.
    struct Track {
        double fader = 0;
        std::string lights; // mute, solo, record, select: "M--*"
        std::string name;
    };

    // On the JACK server that this process uses; `options` of its command line.
    explicit SimulatorProcess(const std::vector<std::string>& options);

    void type(const std::string& line) { keyboard.type(line); }

    // Waits until it has printed `text`.
    bool prints(const std::string& text) const;

    // How the first `count` tracks are at this moment; none when the simulator does not tell.
    std::vector<Track> tracks(int count);

    // How the track is, counted from 1.
    std::optional<Track> track(int number);

    // Ends it, as its user would; whether it has ended in order and in time. (After a client that was killed the JACK
    // server itself hangs for a long time.)
    bool end(std::chrono::milliseconds limit = interop::patience);

    std::string output() const { return process.output(); }
    pid_t id() const { return process.id(); }

private:
    Keyboard keyboard;
    interop::ChildProcess process;
};

} // namespace lumbrine::end_to_end
