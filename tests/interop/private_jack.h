// For tests: a private JACK server with the dummy driver and its own name, so that the user's server is not touched.
// Outside a private world, only one test at a time has one; others wait.
//
//     PrivateJack jack;                                  // started, and this process and its children will find it
//     ChildProcess receiver({LUMBRINE_BIN_DIR "/lumbrine-headless"});
//     waitUntil([&] { return jack.hasPort("Lumbrine:Lumbrine"); });
//     jack.kill();                                       // as a crash would
//     jack.start();
//
// Every wait has a limit and throws std::runtime_error with the server's output when it is exceeded.
#pragma once

#include "tests/interop/child_process.h"
#include "tests/interop/own_world.h"

#include <memory>
#include <string>
#include <vector>

namespace lumbrine::interop {

// A synchronous server waits in each cycle until all clients have finished. An asynchronous one, JACK's default, does
// not: on a busy computer a late client uses the buffers of another cycle, and events are lost, doubled and reordered.
enum class JackMode { synchronous, asynchronous };

// For the names of parameterised tests.
template <typename Parameter>
std::string nameOfMode(const Parameter& mode) {
    return mode.param == JackMode::synchronous ? "Synchronous" : "Asynchronous";
}

class PrivateJack {
public:
    struct Options {
        JackMode mode = JackMode::synchronous;
        int framesPerCycle = 64; // at 48 kHz: a cycle is 1.3 ms
        bool started = true;
    };

    // Sets JACK_DEFAULT_SERVER, JACK_NO_START_SERVER and XDG_RUNTIME_DIR of this process for good: create the object
    // before other threads run.
    PrivateJack() : PrivateJack(Options{}) {}
    explicit PrivateJack(Options options);
    ~PrivateJack();

    // Starts the server and returns when it answers. Precondition: it does not run.
    void start();

    // End the server by SIGKILL, without a goodbye, or cleanly by SIGTERM, and return when it has ended.
    void kill();
    void stop();

    // Stop the process of the server, so that it hangs, and let it continue. `freeze` returns when no thread of the
    // server runs any more.
    void freeze();
    void thaw();

    // The server's wake-ups no longer reach this client, as may happen after the crash of another one.
    void cutOff(const std::string& client);

    // The full names ("Lumbrine:Lumbrine") that jack_lsp prints; empty when no server answers.
    std::vector<std::string> ports() const;
    bool hasPort(const std::string& fullName) const;

    // The short names ("Lumbrine B") of the ports of one direction ("input" or "output") and kind ("midi" or "audio").
    std::vector<std::string> shortNames(const std::string& direction, const std::string& kind) const;

private:
    bool answers() const;

    const Options options;
    const Turn turn{"jack"};
    TemporaryFolder runtimeFolder;
    std::unique_ptr<ChildProcess> server;
};

// True when the process has semaphores of a JACK server in its memory, also of one that has ended.
bool holdsJackSemaphores(pid_t process);

} // namespace lumbrine::interop
