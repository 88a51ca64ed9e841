// lumbrine-demo: the receiver and the simulated Pro Tools in one process, connected in memory. It needs no MIDI system
// on the computer. Clients connect to it over the network as to any receiver.
#include "app/receiver_ending.h"
#include "app/standard_output.h"
#include "model/receiver_model.h"
#include "platform/linux/avahi_advertiser.h"
#include "platform/linux/linux_datagram_sockets.h"
#include "platform/linux/linux_system_info.h"
#include "platform/portable/nlohmann_json.h"
#include "platform/posix/line_input.h"
#include "platform/posix/posix_process_end.h"
#include "platform/posix/posix_stream_sockets.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"
#include "platform/posix/termination_signals.h"
#include "platform/virtual/memory_midi.h"
#include "simulator/default_session.h"
#include "simulator/simulated_pro_tools.h"
#include "tools/demo_console.h"
#include "tools/demo_tour.h"
#include "tools/offered_scripting.h"
#include "tools/session_line.h"

#include <CLI/CLI.hpp>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <optional>

namespace lumbrine {
namespace {

struct DemoArguments {
    int tracks = 24;
    int surfaces = 2;
    bool tour = false;
    bool portsLost = false;
    bool scripting = true;
    std::uint16_t scriptingPort = 31416;
};

constexpr int tracksOfTour = 40; // more than the 16 strips, so that the tour can move the bank

// Prints the tour's lines, each with the seconds since the start.
class TourPage {
public:
    TourPage(const Runtime& runtime, LineOutput& output) : runtime(runtime), output(output), begin(runtime.now()) {}

    void print(const std::string& line) const {
        std::array<char, 32> time{};
        std::snprintf(time.data(), time.size(), "%6.2f s  ", inSeconds(runtime.now() - begin));
        output.print(time.data() + line);
    }

private:
    const Runtime& runtime;
    LineOutput& output;
    const TimePoint begin;
};

// The tour's receiver takes a free port unless QV_PORT names one, and does not announce itself (QV_NO_BONJOUR), so that
// it does not disturb another receiver on this computer or network.
class TourSystemInfo final : public SystemInfo {
public:
    TourSystemInfo(const SystemInfo& real, std::uint16_t port) : real(real), port(port) {}

    std::optional<std::string> environment(const std::string& name) const override {
        const auto wanted = real.environment(name);
        if (name == "QV_PORT" && !wanted) return std::to_string(port);
        if (name == "QV_NO_BONJOUR") return "1";
        return wanted;
    }
    std::vector<std::string> preferredLanguages() const override { return real.preferredLanguages(); }
    std::optional<std::string> computerName() const override { return real.computerName(); }
    std::optional<std::string> primaryIPv4() const override { return real.primaryIPv4(); }

private:
    const SystemInfo& real;
    const std::uint16_t port;
};

std::uint16_t freePort(DatagramSockets& sockets) {
    const int fd = sockets.open();
    sockets.bind(fd, 0);
    const int port = sockets.localPort(fd);
    sockets.close(fd);
    return static_cast<std::uint16_t>(std::max(port, 0));
}

bool isReady(const std::shared_ptr<ReceiverModel>& model) {
    return model && model->published().bankOffset >= 0 && !model->published().calibrating();
}

// During the tour the scripting service also takes a free port; otherwise the port from the command line.
std::unique_ptr<OfferedScripting> offerScripting(Runtime& runtime, SimulatedProTools& proTools,
                                                 const DemoArguments& arguments) {
    if (!arguments.scripting) return nullptr;
    const std::uint16_t port = arguments.tour ? 0 : arguments.scriptingPort;
    return std::make_unique<OfferedScripting>(runtime, proTools.scripting(), port);
}

int run(const DemoArguments& arguments) {
    RunLoop loop;
    std::function<void()> end; // set before the loop runs
    PosixProcessEnd process;
    const TerminationSignals signals([&] {
        process.within(endingTime);
        loop.post([&] { end(); });
    });
    const LinuxSystemInfo computer;
    const Bilingual text(prefersJapanese(computer.preferredLanguages()));
    LineOutput output = standardOutput(text);
    const auto print = [&output](const std::string& line) { output.print(line); };
    RealRuntime runtime(loop);
    MemoryMIDI midi(runtime, seconds(0.0005));
    LinuxDatagramSockets sockets;
    PosixStreamSockets streams;
    AvahiAdvertiser advertiser;
    const TourSystemInfo tourComputer(computer, arguments.tour ? freePort(sockets) : 0);
    const SystemInfo& system = arguments.tour ? static_cast<const SystemInfo&>(tourComputer) : computer;

    const TourPage page(runtime, output);
    const auto printReceiver = [&](const std::string& line) {
        arguments.tour ? page.print(text("receiver   ", "レシーバー ") + line) : print(line);
    };
    SimulatorOptions options;
    options.surfaces = arguments.surfaces;
    options.portsLost = arguments.portsLost;
    SimulatedSession session = defaultSession(arguments.tracks, options.seed);
    const std::string sessionDescription = sessionLine(session, arguments.surfaces, text);
    auto proTools = std::make_unique<SimulatedProTools>(runtime, midi, options, std::move(session));
    auto scripting = offerScripting(runtime, *proTools, arguments);
    const PTSLAddress service{.port = portForReceiver(scripting.get())};

    NlohmannJSON json(text);
    std::shared_ptr<ReceiverModel> model = ReceiverModel::create(
        {runtime, midi, sockets, advertiser, system, streams, json, proTools->screen(), service}, text, printReceiver);
    const DemoConsole console(*proTools, [&] { model->reconnectToPT(); }, [&] { loop.post(end); }, print, text);
    std::optional<LineInput> input;
    std::unique_ptr<DemoTour> tour;
    int status = 0;
    end = [&] {
        tour.reset();
        endReceiver(loop, runtime, process, streams, model);
    };

    loop.post([&] {
        if (!model) return;
        print(sessionDescription);
        print(scripting ? scripting->line(text) : text("No scripting service", "公式 API なし"));
        model->start();
        if (!arguments.tour) {
            print(
                text("Connect a client: lumbrine-remote 127.0.0.1:", "クライアントを接続: lumbrine-remote 127.0.0.1:") +
                std::to_string(model->port()) + text("   (Ctrl-C ends)", "   （Ctrl-C で終了）"));
            print(arguments.portsLost ? text("Pro Tools does not use the MIDI ports; type: reconnect",
                                             "Pro Tools は MIDI ポートを使用していません。reconnect と入力してください")
                                      : text("What Pro Tools' user may do can be typed here; help lists it",
                                             "Pro Tools での操作をここに入力できます（help で一覧）"));
            // A background job of a shell gets SIGTTIN, which stops it, when it reads from the terminal. If the signal
            // is ignored, the read fails instead and the demo goes on.
            std::signal(SIGTTIN, SIG_IGN);
            input.emplace(STDIN_FILENO, [&](std::string line) {
                loop.post([&, typed = std::move(line)] {
                    if (model) console.handle(typed);
                });
            });
            return;
        }
        tour = std::make_unique<DemoTour>(DemoStage::Given{runtime, sockets, *proTools, text, model->port(),
                                                           [&] { return isReady(model); },
                                                           [&page](const std::string& line) { page.print(line); }},
                                          [&](bool succeeded) {
                                              status = succeeded ? 0 : 1;
                                              loop.post(end);
                                          });
        tour->start();
    });
    loop.run();
    input.reset();
    scripting.reset();
    proTools.reset();
    return status;
}

} // namespace
} // namespace lumbrine

int main(int count, char** values) {
    lumbrine::DemoArguments arguments;
    CLI::App program("The Lumbrine receiver beside a simulated Pro Tools, in one process.", "lumbrine-demo");
    program.set_version_flag("--version", "lumbrine-demo " LUMBRINE_VERSION);
    program.add_option("--tracks", arguments.tracks, "Tracks of the simulated session")
        ->check(CLI::Range(1, 1000))
        ->capture_default_str();
    program.add_option("--surfaces", arguments.surfaces, "HUI surfaces that Pro Tools is set up for")
        ->check(CLI::Range(1, 2))
        ->capture_default_str();
    program.add_option("--scripting-port", arguments.scriptingPort, "TCP port of the scripting service")
        ->capture_default_str();
    program.add_flag_callback("--no-scripting", [&] { arguments.scripting = false; }, "Offer no scripting service");
    CLI::Option* const tour =
        program.add_flag("--tour", arguments.tour, "Let two clients play by themselves, tell what happens, and end");
    program
        .add_flag("--ports-lost", arguments.portsLost,
                  "Let Pro Tools use the MIDI ports only after the command \"reconnect\"")
        ->excludes(tour);
    program.footer("Commands on standard input:\n" + lumbrine::demoCommandHelp());
    try {
        program.parse(count, values);
    } catch (const CLI::ParseError& error) {
        return program.exit(error) == 0 ? 0 : 2;
    }
    if (arguments.tour) {
        arguments.tracks = lumbrine::tracksOfTour;
        arguments.surfaces = 2;
    }
    return lumbrine::run(arguments);
}
