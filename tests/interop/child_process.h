// A program that a test starts and that never outlives it: ended by its process id when the object goes, and by the
// system when the test itself is killed.
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

// A new folder under the system's folder for temporary files; gone with everything in it when the object goes.
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

        // Without that, standard output is a pipe of one page that nobody reads.
        bool outputIsRead = true;
    };

    // Starts it; the program is looked up in PATH. Start children on a thread that lives as long as they are needed:
    // the system ends them with that thread. A program that cannot be started ends at once with status 127.
    explicit ChildProcess(const std::vector<std::string>& command) : ChildProcess(command, Setup{}) {}
    ChildProcess(const std::vector<std::string>& command, const Setup& setup);

    // Asks it to end (SIGTERM), insists after two seconds (SIGKILL), and returns when it is gone.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t id() const { return pid; }
    bool running();

    void signal(int number);

    // Waits for its end: the exit status, or 128 + the signal that ended it. Absent when it still runs after `limit`.
    std::optional<int> wait(std::chrono::milliseconds limit);

    // Everything it has written so far, standard output and standard error together.
    std::string output() const;

private:
    void start(const std::vector<std::string>& command, const Setup& setup);

    TemporaryFolder folder;
    pid_t pid = -1;
    int unreadEnd = -1; // of standard output, when nobody reads it
    std::optional<int> status;
};

struct CommandResult {
    int status; // -1 when it did not end in time
    std::string output;
};

// Runs a program to its end.
CommandResult runCommand(const std::vector<std::string>& command, std::chrono::milliseconds limit = patience);

} // namespace lumbrine::interop
