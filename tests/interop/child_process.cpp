#include "tests/interop/child_process.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>

namespace lumbrine::interop {

namespace fs = std::filesystem;

namespace {

std::string makeFolder() {
    std::string pattern = (fs::temp_directory_path() / "lumbrine-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    return pattern;
}

std::vector<std::string> environmentWith(const std::map<std::string, std::string>& added) {
    std::vector<std::string> entries;
    for (char** entry = ::environ; *entry != nullptr; ++entry) {
        const std::string_view text = *entry;
        if (!added.contains(std::string(text.substr(0, text.find('='))))) entries.emplace_back(text);
    }
    for (const auto& [name, value] : added)
        entries.push_back(name + "=" + value);
    return entries;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

TemporaryFolder::TemporaryFolder() : path(makeFolder()) {}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path, ignored);
}

ChildProcess::ChildProcess(const std::vector<std::string>& command, const Setup& setup) {
    start(command, setup);
}

void ChildProcess::start(const std::vector<std::string>& command, const Setup& setup) {
    std::vector<std::string> arguments = command;
    std::vector<std::string> variables = environmentWith(setup.environment);
    const std::vector<char*> argv = pointersTo(arguments);
    const std::vector<char*> environment = pointersTo(variables);
    const std::string log = folder.path / "output";
    const pid_t parent = ::getpid();
    std::array<int, 2> unread{-1, -1};
    if (!setup.outputIsRead) {
        if (::pipe2(unread.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
        ::fcntl(unread[1], F_SETPIPE_SZ, 4096);
    }

    pid = ::fork();
    if (pid != 0) {
        unreadEnd = unread[0];
        if (unread[1] >= 0) ::close(unread[1]);
        return;
    }
    // From here to exec nothing may allocate: another thread of the test may hold the allocator's lock.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) ::_exit(127);
    const int out = ::open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    const int in = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    ::dup2(in, STDIN_FILENO);
    ::dup2(unread[1] >= 0 ? unread[1] : out, STDOUT_FILENO);
    ::dup2(out, STDERR_FILENO);
    ::execvpe(argv[0], argv.data(), environment.data());
    ::_exit(127);
}

ChildProcess::~ChildProcess() {
    signal(SIGTERM);
    if (!wait(std::chrono::seconds(2))) {
        signal(SIGKILL);
        wait(patience);
    }
    if (unreadEnd >= 0) ::close(unreadEnd);
}

bool ChildProcess::running() {
    int result = 0;
    if (!status && ::waitpid(pid, &result, WNOHANG) == pid)
        status = WIFEXITED(result) ? WEXITSTATUS(result) : 128 + WTERMSIG(result);
    return !status;
}

void ChildProcess::signal(int number) {
    if (running()) ::kill(pid, number);
}

std::optional<int> ChildProcess::wait(std::chrono::milliseconds limit) {
    waitUntil([this] { return !running(); }, limit);
    return status;
}

std::string ChildProcess::output() const {
    std::ifstream file(folder.path / "output");
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

CommandResult runCommand(const std::vector<std::string>& command, std::chrono::milliseconds limit) {
    ChildProcess child(command);
    const int status = child.wait(limit).value_or(-1);
    return {status, child.output()};
}

} // namespace lumbrine::interop
