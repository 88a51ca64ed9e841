// A JACK server of the test's own: dummy driver, its own name, so that no server of the user's is touched. Outside an
// own world, tests that want one at the same time wait for each other.
//
//     PrivateJack jack;                                  // started, and this process and its children will find it
//     ChildProcess receiver({LUMBRINE_BIN_DIR "/lumbrine-headless"});
//     waitUntil([&] { return jack.hasPort("Lumbrine:Lumbrine"); });
//     jack.kill();                                       // as a crash would
//     jack.start();
//
// Every wait has a limit and throws std::runtime_error with the server's output when it is over.
#pragma once

#include "tests/interop/child_process.h"
#include "tests/interop/own_world.h"

#include <memory>
#include <string>
#include <vector>

namespace lumbrine::interop {

// Whether the server waits in each cycle until all clients have done their part. It does so only when it is told to.
// Else a client that does not get its turn in time reads and writes buffers of another cycle: on a busy computer events
// are lost, doubled and reordered.
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

    // Sets JACK_DEFAULT_SERVER, JACK_NO_START_SERVER and XDG_RUNTIME_DIR of this process for its whole life: make the
    // object before other threads run.
    PrivateJack() : PrivateJack(Options{}) {}
    explicit PrivateJack(Options chosen);
    ~PrivateJack();

    // Returns when the server answers. Not while it runs.
    void start();

    // Ends it without a goodbye (SIGKILL), or cleanly (SIGTERM). Returns when it is gone.
    void kill();
    void stop();

    // Lets it hang, with everything it holds, and go on. `freeze` returns when no thread of the server runs any more.
    void freeze();
    void thaw();

    // Full names ("Lumbrine:Lumbrine"), as jack_lsp prints them; empty when no server answers.
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

// Whether the process has semaphores of a JACK server in its memory, be it of one that is dead.
bool holdsJackSemaphores(pid_t process);

} // namespace lumbrine::interop
