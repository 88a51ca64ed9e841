// lumbrine-headless as a process of its own, on a free port of this computer.
#pragma once

#include "tests/interop/child_process.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace lumbrine::end_to_end {

inline const std::string headlessProgram = LUMBRINE_BIN_DIR "/lumbrine-headless";

struct ReceiverSetup {
    std::string language = "en";
    bool announced = false; // on the network
    std::uint16_t port = 0; // 0: a free one
    std::string jack = {};  // name of the JACK server; empty: the one that this process uses
};

// The environment variables that make it so.
std::map<std::string, std::string> environmentFor(const ReceiverSetup& setup);

class ReceiverProcess {
public:
    ReceiverProcess() : ReceiverProcess(ReceiverSetup{}) {}

    // Returns when it has opened its UDP port, or told that it cannot; throws std::runtime_error when it does neither.
    explicit ReceiverProcess(ReceiverSetup setup);

    // Its lines so far, and waiting for one that contains `text`.
    std::vector<std::string> log() const;
    bool logs(const std::string& text) const;

    const std::uint16_t port;
    interop::ChildProcess process;
};

// A name that no JACK server has.
inline const std::string noJack = "lumbrine-absent";

} // namespace lumbrine::end_to_end
