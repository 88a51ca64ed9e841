#include "tests/end_to_end/gateway_process.h"

#include "tests/end_to_end/client_socket.h"
#include "tests/interop/waiting.h"

#include <fstream>
#include <stdexcept>

namespace lumbrine::end_to_end {

namespace {

using interop::ChildProcess;

std::vector<std::string> commandWith(const std::vector<std::string>& options) {
    std::vector<std::string> command{webProgram};
    command.insert(command.end(), options.begin(), options.end());
    return command;
}

} // namespace

GatewayProcess::GatewayProcess(std::uint16_t receiverPort, const std::vector<std::string>& options)
    : port(freePort()), process(commandWith(options), {.environment = {{"QV_WEB_PORT", std::to_string(port)},
                                                                       {"QV_PORT", std::to_string(receiverPort)},
                                                                       {"XDG_STATE_HOME", state.path.string()},
                                                                       {"LANGUAGE", "en"}}}) {
    const auto serves = [&] { return process.output().find("✓ Browsers on :") != std::string::npos; };
    if (!interop::waitUntil([&] { return serves() || !process.running(); }) || !serves())
        throw std::runtime_error("the gateway does not start: " + process.output());
}

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
