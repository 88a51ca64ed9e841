// lumbrine: the receiver with its window and its status icon.
#include "app/check_service.h"
#include "app/command_line.h"
#include "app/flight_recorder.h"
#include "app/key_keeper.h"
#include "app/qt/desktop_run.h"
#include "app/receiver_ending.h"
#include "app/standard_output.h"
#include "app/support_report.h"
#include "platform/linux/avahi_advertiser.h"
#include "platform/linux/avahi_host_names.h"
#include "platform/linux/linux_datagram_sockets.h"
#include "platform/linux/linux_system_info.h"
#include "platform/linux/midi_backend.h"
#include "platform/linux/openssl_secrets.h"
#include "platform/linux/xdg_autostart.h"
#include "platform/portable/nlohmann_json.h"
#include "platform/portable/no_accessibility.h"
#include "platform/posix/network_watch.h"
#include "platform/posix/posix_process_end.h"
#include "platform/posix/posix_stream_sockets.h"
#include "platform/posix/termination_signals.h"

#include <QApplication>
#include <cstdio>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace lumbrine {
namespace {

constexpr ProgramInfo program{
    .name = "lumbrine",
    .version = LUMBRINE_VERSION,
    .helpText =
        "Usage: lumbrine [--hidden]\n"
        "\n"
        "The Lumbrine receiver: takes fader moves and presses from a phone or tablet on the network and plays them to\n"
        "Pro Tools as two HUI surfaces on the virtual MIDI ports \"Lumbrine\" and \"Lumbrine B\". Shows a window and "
        "an\n"
        "icon in the status area; closing the window leaves it running. Started again, it shows the window of the one\n"
        "that runs. The log goes to standard output as well. SIGINT (Ctrl-C) and SIGTERM end it.\n"
        "\n"
        "      --hidden   show no window at first, only the icon; so it is started at login\n"
        "  -h, --help     print this and end\n"
        "      --version  print the version and end\n"
        "\n"
        "Environment variables:\n"
        "  QV_PORT         UDP port to listen on (default 52700)\n"
        "  QV_NO_BONJOUR   set to anything: the service is not announced on the network\n"
        "  LUMBRINE_CLIENTS\n"
        "                  paired: only clients with a key are let in\n"
        "  QV_DEBUG        set to anything: diagnostic lines\n"
        "  LUMBRINE_BLACKBOX\n"
        "                  the recording for lumbrine-blackbox: 0 for none, its size in MiB (default 16) or its path\n"
        "  LANGUAGE, LC_ALL, LC_MESSAGES, LANG\n"
        "                  the first that is set chooses the language: Japanese (ja...) or English\n",
};

const QString identifier = QStringLiteral("com.tarnwick.lumbrine");

int run(int count, char** arguments, bool hidden) {
    const MIDIBackend backend;
    QtMainLoop loop;
    std::function<void()> begin = [] {};
    std::function<void()> end = [] {};
    PosixProcessEnd process;
    const TerminationSignals terminationSignals([&] {
        process.within(endingTime);
        loop.post([&] { end(); });
    });
    const LinuxSystemInfo system;
    const Bilingual text(prefersJapanese(system.preferredLanguages()));
    const auto application = openDisplay(std::string(program.name), text, count, arguments);
    SingleInstance instance(identifier);
    if (!instance.isFirst()) {
        if (instance.handOver()) return 0;
        std::fputs(text("lumbrine: it is running already, but does not answer\n",
                        "lumbrine: すでに起動していますが、応答がありません\n")
                       .c_str(),
                   stderr);
        return 1;
    }
    LineOutput output = standardOutput(text);
    const auto print = [&output](const std::string& line) { output.print(line); };
    RealRuntime runtime(loop);
    FlightRecorder recorder(runtime, blackboxSetting(system.environment("LUMBRINE_BLACKBOX"), system.stateFolder()),
                            "lumbrine " LUMBRINE_VERSION ", Linux", text);
    introduceProgram(identifier, text);
    const std::unique_ptr<MIDIServices> midi = backend.services(runtime, [&begin] { begin(); });
    LinuxDatagramSockets sockets;
    PosixStreamSockets streams;
    AvahiAdvertiser advertiser;
    NlohmannJSON json(text);
    NoAccessibility accessibility;
    XdgAutostart autostart(XdgAutostart::Place::of(system));
    LoginItem loginItem(autostart, text, print);
    OpenSSLSecrets secrets;
    auto model = ReceiverModel::create(
        recorder.recorded({runtime, *midi, sockets, advertiser, system, streams, json, accessibility, {}, &secrets}),
        text, recorder.recorded(print));
    recorder.keepUp(model);
    const std::uint16_t port = model->port();
    std::optional<KeyKeeper> keys;
    if (const auto folder = system.stateFolder()) keys.emplace(runtime, *folder, secrets, model, text);
    const NetworkWatch network(runtime, [weak = std::weak_ptr(model)] {
        if (const auto there = weak.lock()) there->readAddress();
    });
    AvahiHostNames hosts;
    ReceiverApp::Surroundings around = surroundings(runtime, hosts, LUMBRINE_VERSION);
    if (recorder.isRecording())
        around.saveReport = [recording = recordingPath(system)](const std::string& file, const std::string& diagnosis) {
            return saveSupportReport(recording, file, diagnosis);
        };
    ReceiverApp app(std::move(model), loginItem, text, std::move(around));
    const CheckService checks(loop, port, [&app, &output] {
        return std::optional(ReceiverNow{.published = app.published(), .outputBacklog = output.backlog()});
    });
    DesktopRun{loop, runtime, process, streams, app, instance, identifier, begin, end, hidden, keys ? &*keys : nullptr}
        .run();
    return 0;
}

} // namespace
} // namespace lumbrine

int main(int count, char** arguments) {
    using namespace lumbrine;
    const std::span<const char* const> given(arguments, static_cast<std::size_t>(count));
    const bool hidden = given.size() == 2 && std::string_view(given[1]) == "--hidden";
    if (const auto answer = answerCommandLine(program, given.subspan(hidden || given.empty() ? given.size() : 1))) {
        std::fputs(answer->output.c_str(), stdout);
        std::fputs(answer->error.c_str(), stderr);
        return answer->status;
    }
    return run(count, arguments, hidden);
}
