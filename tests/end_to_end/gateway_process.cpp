#include "tests/end_to_end/gateway_process.h"

#include "tests/interop/waiting.h"

#include <fstream>
#include <stdexcept>

namespace lumbrine::end_to_end {

namespace {

using interop::ChildProcess;

std::vector<std::string> commandWith(const std::vector<std::string>& options) {
    std::vector<std::string> command{webProgram, "--port", "0"};
    command.insert(command.end(), options.begin(), options.end());
    return command;
}

// Waits until it says on which port it serves.
std::uint16_t portOf(ChildProcess& gateway) {
    const std::string words = "✓ Browsers on :";
    std::size_t place = std::string::npos;
    interop::waitUntil([&] {
        place = gateway.output().find(words);
        return gateway.output().find('\n', place) != std::string::npos || !gateway.running();
    });
    if (place == std::string::npos) throw std::runtime_error("the gateway does not start: " + gateway.output());
    return static_cast<std::uint16_t>(std::stoul(gateway.output().substr(place + words.size())));
}

} // namespace

GatewayProcess::GatewayProcess(std::uint16_t receiverPort, const std::vector<std::string>& options)
    : process(commandWith(options), {.environment = {{"QV_PORT", std::to_string(receiverPort)},
                                                     {"XDG_STATE_HOME", state.path.string()},
                                                     {"LANGUAGE", "en"}}}),
      port(portOf(process)) {}

std::string GatewayProcess::key() const {
    std::ifstream file(state.path / "lumbrine/web-key");
    std::string key;
    std::getline(file, key);
    return key;
}

void GatewayProcess::makeNewKey() const {
    ChildProcess maker({webProgram, "--new-key"}, {.environment = {{"XDG_STATE_HOME", state.path.string()}}});
    if (maker.wait(interop::patience) != 0) throw std::runtime_error("no new key: " + maker.output());
}

} // namespace lumbrine::end_to_end
