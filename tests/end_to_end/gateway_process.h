// For tests: lumbrine-web as a separate process, with a state folder of its own.
#pragma once

#include "tests/interop/child_process.h"

#include <cstdint>
#include <string>
#include <vector>

namespace lumbrine::end_to_end {

inline const std::string webProgram = LUMBRINE_BIN_DIR "/lumbrine-web";

class GatewayProcess {
public:
    // Returns when it serves. Throws std::runtime_error when it does not. `options` are more of its command line.
    explicit GatewayProcess(std::uint16_t receiverPort, const std::vector<std::string>& options = {});

    // The pairing key in its file.
    std::string key() const;

    // The folder of its folder for state.
    std::string stateHome() const { return state.path.string(); }

    // Runs the program with --new-key.
    void makeNewKey() const;

private:
    const interop::TemporaryFolder state;

public:
    interop::ChildProcess process;
    const std::uint16_t port; // a free one that it has chosen
};

} // namespace lumbrine::end_to_end
