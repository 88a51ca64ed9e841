// lumbrine-demo-window: the receiver with its window and the simulated Pro Tools in one process, connected in memory.
#include "app/qt/desktop_run.h"
#include "app/receiver_ending.h"
#include "app/standard_output.h"
#include "model/receiver_model.h"
#include "platform/linux/avahi_advertiser.h"
#include "platform/linux/avahi_host_names.h"
#include "platform/linux/linux_datagram_sockets.h"
#include "platform/linux/linux_system_info.h"
#include "platform/portable/nlohmann_json.h"
#include "platform/posix/posix_process_end.h"
#include "platform/posix/posix_stream_sockets.h"
#include "platform/posix/termination_signals.h"
#include "platform/virtual/memory_midi.h"
#include "simulator/default_session.h"
#include "simulator/simulated_pro_tools.h"
#include "tools/offered_scripting.h"
#include "tools/session_line.h"

#include <CLI/CLI.hpp>

#include <QApplication>
#include <utility>

namespace lumbrine {
namespace {

struct DemoArguments {
    int tracks = 24;
    int surfaces = 2;
    std::uint16_t scriptingPort = 31416;
    bool portsLost = false;
};

// The demo is not to be started at login: the switch in the window stays off and shows the reason.
class NoLoginService final : public LoginService {
public:
    explicit NoLoginService(Bilingual text) : text(text) {}

    bool isEnabled() override { return false; }
    std::expected<void, std::string> registerApplication() override {
        return std::unexpected(text("the demo is not for every day", "デモはログイン時に起動できません"));
    }
    std::expected<void, std::string> unregisterApplication() override { return {}; }

private:
    const Bilingual text;
};

const QString identifier = QStringLiteral("com.tarnwick.lumbrine.demo");

int run(const DemoArguments& arguments, int count, char** values) {
    QtMainLoop loop;
    std::function<void()> end = [] {};
    PosixProcessEnd process;
    const TerminationSignals terminationSignals([&] {
        process.within(endingTime);
        loop.post([&] { end(); });
    });
    const LinuxSystemInfo system;
    const Bilingual text(prefersJapanese(system.preferredLanguages()));
    const auto application = openDisplay("lumbrine-demo-window", text, count, values);
    SingleInstance instance(identifier);
    if (!instance.isFirst()) return instance.handOver() ? 0 : 1;
    LineOutput output = standardOutput(text);
    const auto print = [&output](const std::string& line) { output.print(line); };
    RealRuntime runtime(loop);
    introduceProgram(identifier, text);
    MemoryMIDI midi(runtime, seconds(0.0005));
    LinuxDatagramSockets sockets;
    PosixStreamSockets streams;
    AvahiAdvertiser advertiser;

    SimulatorOptions options;
    options.surfaces = arguments.surfaces;
    options.portsLost = arguments.portsLost;
    SimulatedSession session = defaultSession(arguments.tracks, options.seed);
    const std::string sessionDescription = sessionLine(session, arguments.surfaces, text);
    auto proTools = std::make_unique<SimulatedProTools>(runtime, midi, options, std::move(session));
    auto scripting = std::make_unique<OfferedScripting>(runtime, proTools->scripting(), arguments.scriptingPort);
    const PTSLAddress service{.port = portForReceiver(scripting.get())};

    NlohmannJSON json(text);
    NoLoginService login(text);
    LoginItem loginItem(login, text, print);
    auto model = ReceiverModel::create(
        {runtime, midi, sockets, advertiser, system, streams, json, proTools->screen(), service}, text, print);
    print(sessionDescription);
    print(scripting->line(text));
    print(text("Connect a client: lumbrine-remote 127.0.0.1:", "クライアントを接続: lumbrine-remote 127.0.0.1:") +
          std::to_string(model->port()));
    AvahiHostNames hosts;
    ReceiverApp app(std::move(model), loginItem, text, surroundings(runtime, hosts, LUMBRINE_VERSION));
    std::function<void()> begin = [] {};
    loop.post([&begin] { begin(); });
    DesktopRun{loop, runtime, process, streams, app, instance, identifier, begin, end}.run();
    scripting.reset();
    proTools.reset();
    return 0;
}

} // namespace
} // namespace lumbrine

int main(int count, char** values) {
    lumbrine::DemoArguments arguments;
    CLI::App program("The Lumbrine receiver with its window, beside a simulated Pro Tools in the same process.",
                     "lumbrine-demo-window");
    program.set_version_flag("--version", "lumbrine-demo-window " LUMBRINE_VERSION);
    program.add_option("--tracks", arguments.tracks, "Tracks of the simulated session")
        ->check(CLI::Range(1, 1000))
        ->capture_default_str();
    program.add_option("--surfaces", arguments.surfaces, "HUI surfaces that Pro Tools is set up for")
        ->check(CLI::Range(1, 2))
        ->capture_default_str();
    program.add_option("--scripting-port", arguments.scriptingPort, "TCP port of the scripting service")
        ->capture_default_str();
    program.add_flag("--ports-lost", arguments.portsLost,
                     "Let Pro Tools use the MIDI ports only after the button \"Reconnect to PT\"");
    try {
        program.parse(count, values);
    } catch (const CLI::ParseError& error) {
        return program.exit(error) == 0 ? 0 : 2;
    }
    return lumbrine::run(arguments, count, values);
}
