// For tests: a started program that never outlives the test. The destructor ends it by its process id, and the system
// ends it when the test itself is killed.
#pragma once

#include "tests/interop/waiting.h"

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine::interop {

// A new folder in the system's folder for temporary files. The destructor removes it with everything in it.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path path;
};

class ChildProcess {
public:
    struct Setup {
        std::map<std::string, std::string> environment = {}; // added to the test's own

        // When false, standard output is a pipe of one page that is never read.
        bool outputIsRead = true;
    };

    // Starts the program, which is looked up in PATH. The system ends it with the thread that called this, so that
    // thread must live long enough. A program that cannot be started ends at once with status 127.
    explicit ChildProcess(const std::vector<std::string>& command) : ChildProcess(command, Setup{}) {}
    ChildProcess(const std::vector<std::string>& command, const Setup& setup);

    // Sends SIGTERM, after two seconds SIGKILL, and returns when the program has ended.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t id() const { return pid; }
    bool running();

    void signal(int number);

    // Waits for the end and returns the exit status, or 128 + the signal that ended it. Absent when it still runs after
    // `limit`.
    std::optional<int> wait(std::chrono::milliseconds limit);

    // Everything written so far to standard output and standard error.
    std::string output() const;

private:
    void start(const std::vector<std::string>& command, const Setup& setup);

    TemporaryFolder folder;
    pid_t pid = -1;
    int unreadEnd = -1; // the reading end of standard output when it is not read
    std::optional<int> status;
};

struct CommandResult {
    int status; // -1 when it did not end in time
    std::string output;
};

// Runs a program to its end.
CommandResult runCommand(const std::vector<std::string>& command, std::chrono::milliseconds limit = patience);

} // namespace lumbrine::interop
