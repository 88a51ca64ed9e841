#include "tests/interop/private_jack.h"

#include "tests/interop/waiting.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace lumbrine::interop {

namespace {

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

// Always the same: JACK's registry takes the place of a server that was killed back only for one of the same name.
constexpr const char* serverName = "lumbrine-private";

} // namespace

PrivateJack::PrivateJack(Options options) : options(options) {
    ::setenv("JACK_DEFAULT_SERVER", serverName, 1);
    ::setenv("JACK_NO_START_SERVER", "1", 1);
    ::setenv("XDG_RUNTIME_DIR", runtimeFolder.path.c_str(), 1);
    if (options.started) start();
}

PrivateJack::~PrivateJack() {
    stop();
}

void PrivateJack::start() {
    std::vector<std::string> command{"jackd", "-r", "-p", "64", "-n", serverName}; // the first -p: ports
    if (options.mode == JackMode::synchronous) command.emplace_back("-S");
    command.insert(command.end(), {"-d", "dummy", "-r", "48000", "-p", std::to_string(options.framesPerCycle)});
    // The server of a test that was killed counts as active until the system has forgotten its process.
    const auto started = [&] {
        server = std::make_unique<ChildProcess>(command);
        waitUntil([this] { return !server->running() || answers(); });
        return server->running() || server->output().find("already active") == std::string::npos;
    };
    waitUntil(started);
    if (!server->running()) throw std::runtime_error("jackd does not start: " + server->output());
}

void PrivateJack::kill() {
    if (server) server->signal(SIGKILL);
    server.reset();
}

void PrivateJack::freeze() {
    server->signal(SIGSTOP);
    siginfo_t ignored{};
    ::waitid(P_PID, static_cast<id_t>(server->id()), &ignored, WSTOPPED);
}

void PrivateJack::thaw() {
    server->signal(SIGCONT);
}

void PrivateJack::cutOff(const std::string& client) {
    // Server and client share a futex and, behind it, whether only threads of one process use it: then the server's
    // wake-ups stay in its own process.
    const std::string futex =
        "/dev/shm/jack_sem." + std::to_string(::getuid()) + "_" + std::string(serverName) + "_" + client;
    std::fstream shared(futex, std::ios::binary | std::ios::in | std::ios::out);
    constexpr std::streamoff isPrivate = 4;
    shared.seekp(isPrivate).put(1).flush();
    if (!shared) throw std::runtime_error("no client " + client);
}

void PrivateJack::stop() {
    server.reset();
}

bool PrivateJack::answers() const {
    return runCommand({"jack_lsp"}).status == 0;
}

std::vector<std::string> PrivateJack::ports() const {
    const CommandResult result = runCommand({"jack_lsp"});
    if (result.status != 0) return {};
    return linesOf(result.output);
}

bool PrivateJack::hasPort(const std::string& fullName) const {
    const std::vector<std::string> all = ports();
    return std::ranges::find(all, fullName) != all.end();
}

std::vector<std::string> PrivateJack::shortNames(const std::string& direction, const std::string& kind) const {
    // A line with the name, then one with the properties and one with the type, both indented.
    const CommandResult result = runCommand({"jack_lsp", "-p", "-t"});
    if (result.status != 0) return {};
    std::vector<std::string> names;
    std::string port;
    bool wanted = false;
    for (const std::string& line : linesOf(result.output)) {
        if (!line.starts_with('\t')) {
            port = line.substr(line.find(':') + 1);
        } else if (line.find("properties:") != std::string::npos) {
            wanted = line.find(direction + ",") != std::string::npos;
        } else if (wanted && line.find(kind) != std::string::npos) {
            names.push_back(port);
        }
    }
    return names;
}

bool holdsJackSemaphores(pid_t process) {
    std::ifstream maps("/proc/" + std::to_string(process) + "/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.find("/dev/shm/jack_sem.") != std::string::npos) return true;
    return false;
}

} // namespace lumbrine::interop
