// For tests: lumbrine-headless as a separate process, on a free port of this computer.
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
    bool announced = false;     // by mDNS
    std::uint16_t port = 0;     // 0 for a free one
    std::string jack = {};      // name of the JACK server; empty for the one that this process uses
    std::string blackbox = "0"; // the recording's path; 0 for none
    bool onlyPaired = false;    // lets no client in without a key
    std::string stateHome = {}; // the folder of its folder for state; empty for the one of the user who tests
};

// The environment variables for this setup.
std::map<std::string, std::string> environmentFor(const ReceiverSetup& setup);

class ReceiverProcess {
public:
    ReceiverProcess() : ReceiverProcess(ReceiverSetup{}) {}

    // Returns when it has opened its UDP port or reported that it cannot. Throws std::runtime_error when it does
    // neither.
    explicit ReceiverProcess(ReceiverSetup setup);

    // The lines logged so far; and waits for a line that contains `text`.
    std::vector<std::string> log() const;
    bool logs(const std::string& text) const;

    const std::uint16_t port;
    interop::ChildProcess process;
};

// A name that no JACK server has.
inline const std::string noJack = "lumbrine-absent";

} // namespace lumbrine::end_to_end
