#include "tests/interop/private_jack.h"

#include "tests/interop/waiting.h"

#include <fcntl.h>
#include <sys/file.h>
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

constexpr std::chrono::minutes longestTurn{2};

// Only opened when it is there already: it may be another user's, and reading is enough for a lock.
int openLockFile() {
    const std::filesystem::path path = std::filesystem::temp_directory_path() / "lumbrine-private-jack.lock";
    const int existing = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    return existing >= 0 ? existing : ::open(path.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC, 0644);
}

} // namespace

JackTurn::JackTurn() : lockFile(openLockFile()) {
    const auto take = [this] { return ::flock(lockFile, LOCK_EX | LOCK_NB) == 0; };
    if (!waitUntil(take, longestTurn)) throw std::runtime_error("other tests keep their JACK server");
}

JackTurn::~JackTurn() {
    ::close(lockFile); // and with it the lock; the file stays for the next one
}

PrivateJack::PrivateJack(Options chosen) : options(chosen) {
    ::setenv("JACK_DEFAULT_SERVER", serverName, 1);
    ::setenv("JACK_NO_START_SERVER", "1", 1);
    ::setenv("XDG_RUNTIME_DIR", runtimeFolder.path.c_str(), 1);
    if (options.started) start();
}

PrivateJack::~PrivateJack() {
    stop();
}

void PrivateJack::start() {
    // Synchronous mode and a generous client time-out: a busy machine must not lose events or throw clients out.
    const std::vector<std::string> command{
        "jackd", "-r",       "-S", "-t",    "2000", "-p",    "64", // ports
        "-n",    serverName, "-d", "dummy", "-r",   "48000", "-p", std::to_string(options.framesPerCycle)};
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
}

void PrivateJack::thaw() {
    server->signal(SIGCONT);
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
