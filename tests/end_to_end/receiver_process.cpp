#include "tests/end_to_end/receiver_process.h"

#include "tests/end_to_end/client_socket.h"
#include "tests/interop/waiting.h"

#include <sstream>
#include <stdexcept>

namespace lumbrine::end_to_end {

namespace {

ReceiverSetup onItsPort(ReceiverSetup setup) {
    if (setup.port == 0) setup.port = freePort();
    return setup;
}

} // namespace

std::map<std::string, std::string> environmentFor(const ReceiverSetup& setup) {
    std::map<std::string, std::string> environment{{"QV_PORT", std::to_string(setup.port)},
                                                   {"LANGUAGE", setup.language},
                                                   {"JACK_NO_START_SERVER", "1"},
                                                   {"LUMBRINE_BLACKBOX", setup.blackbox}};
    if (!setup.announced) environment["QV_NO_BONJOUR"] = "1";
    if (setup.onlyPaired) environment["LUMBRINE_CLIENTS"] = "paired";
    if (!setup.stateHome.empty()) environment["XDG_STATE_HOME"] = setup.stateHome;
    if (!setup.jack.empty()) environment["JACK_DEFAULT_SERVER"] = setup.jack;
    return environment;
}

ReceiverProcess::ReceiverProcess(ReceiverSetup setup)
    : port((setup = onItsPort(std::move(setup))).port),
      process({headlessProgram}, {.environment = environmentFor(setup)}) {
    if (!logs(" UDP ")) throw std::runtime_error("the receiver does not start: " + process.output());
}

std::vector<std::string> ReceiverProcess::log() const {
    std::vector<std::string> lines;
    std::istringstream stream(process.output());
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

bool ReceiverProcess::logs(const std::string& text) const {
    return interop::waitUntil([&] { return process.output().find(text) != std::string::npos; });
}

} // namespace lumbrine::end_to_end
