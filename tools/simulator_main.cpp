// lumbrine-simulator: the simulated Pro Tools as a program, with MIDI ports and a TCP port for its scripting service.
#include "platform/posix/line_input.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/termination_signals.h"
#include "simulator/default_session.h"
#include "tools/offered_scripting.h"
#include "tools/simulator_arguments.h"
#include "tools/simulator_place.h"
#include "tools/simulator_shell.h"

#include <unistd.h>

#include <cstdio>
#include <optional>

namespace lumbrine {
namespace {

constexpr int noMIDI = 1;

void print(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

int simulate(const SimulatorArguments& arguments) {
    const std::unique_ptr<SimulatorPlace> place = SimulatorPlace::make();
    MainLoop& loop = place->loop();
    const TerminationSignals signals([&loop] { loop.stop(); });
    RealRuntime runtime(loop);
    const std::unique_ptr<MIDIConnections> midi = place->midi(runtime);
    SimulatedProTools proTools(runtime, *midi, arguments.options,
                               defaultSession(arguments.tracks, arguments.options.seed, arguments.style));
    if (!proTools.hasMIDI()) {
        std::fputs("lumbrine-simulator: this computer has no MIDI system; start a JACK server\n", stderr);
        runtime.shutDown();
        return noMIDI;
    }

    std::optional<OfferedScripting> scripting;
    if (arguments.scripting) scripting.emplace(runtime, proTools.scripting(), arguments.scriptingPort);
    if (scripting && !scripting->port())
        std::fprintf(stderr, "lumbrine-simulator: port %d is taken: there is no scripting service\n",
                     arguments.scriptingPort);

    SimulatorShell shell(proTools, isatty(STDOUT_FILENO) == 1, print);
    const auto refresh = runtime.repeatOnMain(shell.tickInterval(), [&shell] { shell.tick(); });
    const LineInput input(STDIN_FILENO, [&](std::string line) {
        runtime.postMain([&shell, &loop, typed = std::move(line)] {
            if (!shell.handle(typed)) loop.stop();
        });
    });
    std::shared_ptr<void> screen = place->show(runtime, proTools);
    shell.tick();
    place->run();
    screen.reset();
    shell.end();
    runtime.shutDown();
    return 0;
}

} // namespace
} // namespace lumbrine

int main(int argc, char** argv) {
    const auto arguments = lumbrine::readSimulatorArguments({argv + 1, argv + argc});
    if (!arguments) {
        std::fputs(arguments.error().output.c_str(), stdout);
        std::fputs(arguments.error().error.c_str(), stderr);
        return arguments.error().status;
    }
    return lumbrine::simulate(*arguments);
}
