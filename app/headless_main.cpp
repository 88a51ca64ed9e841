// lumbrine-headless: the receiver without a window. Its log goes to standard output.
#include "app/check_program.h"
#include "app/check_service.h"
#include "app/command_line.h"
#include "app/diagnosis.h"
#include "app/flight_recorder.h"
#include "app/key_keeper.h"
#include "app/pair_program.h"
#include "app/receiver_ending.h"
#include "app/standard_output.h"
#include "model/receiver_model.h"
#include "platform/linux/avahi_advertiser.h"
#include "platform/linux/linux_datagram_sockets.h"
#include "platform/linux/linux_system_info.h"
#include "platform/linux/midi_backend.h"
#include "platform/linux/openssl_secrets.h"
#include "platform/linux/port_holder.h"
#include "platform/linux/service_status.h"
#include "platform/portable/nlohmann_json.h"
#include "platform/portable/no_accessibility.h"
#include "platform/posix/network_watch.h"
#include "platform/posix/posix_process_end.h"
#include "platform/posix/posix_stream_sockets.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"
#include "platform/posix/termination_signals.h"

#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace lumbrine {
namespace {

constexpr ProgramInfo program{
    .name = "lumbrine-headless",
    .version = LUMBRINE_VERSION,
    .helpText =
        "Usage: lumbrine-headless [--check [--save FILE] | --pair [NAME] | --forget NAME | --forget-all]\n"
        "\n"
        "The Lumbrine receiver without a window: takes fader moves and presses from a phone or tablet on the\n"
        "network and plays them to Pro Tools as two HUI surfaces on the virtual MIDI ports \"Lumbrine\" and\n"
        "\"Lumbrine B\". The log goes to standard output. SIGINT (Ctrl-C) and SIGTERM end it. When another program\n"
        "has its UDP port, it says so and ends with status 1.\n"
        "\n"
        "      --check    print what works and what does not, of the receiver that runs or else of this computer,\n"
        "                 and end: with 0 when nothing is wrong, else with 1\n"
        "      --save FILE\n"
        "                 behind --check: also write a file for those who help, with the recording of the last hour,\n"
        "                 the list and the log, without names and addresses\n"
        "      --pair [NAME]\n"
        "                 print the key that clients seal with, as a QR code and as letters, and end; with a NAME\n"
        "                 that key, which is made when there is none\n"
        "      --forget NAME\n"
        "                 forget the key of that name, and end\n"
        "      --forget-all\n"
        "                 forget all keys, and end\n"
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
        "                  the first that is set chooses the language of the log: Japanese (ja...) or English\n",
};

// The first sentence that matters, each second at most.
void followStatus(RunLoop& loop, ServiceStatus& status, const std::shared_ptr<ReceiverModel>& model, Bilingual text) {
    if (!status.isWanted()) return;
    const auto isDue = std::make_shared<bool>(false);
    model->onChange([&loop, &status, &model, text, isDue] {
        if (std::exchange(*isDue, true)) return;
        loop.postAfter(seconds(1), [&status, &model, text, isDue] {
            *isDue = false;
            if (model) status.tell(summaryOf(diagnosis(model->published(), HostSystem::linuxDesktop, text), text));
        });
    });
}

void tellWhoHasThePort(std::uint16_t number, const Bilingual& text) {
    const auto holder = holderOfUDPPort(number);
    if (!holder) return;
    const std::string port = std::to_string(number);
    const std::string line =
        text("UDP port " + port + " is taken by " + *holder, "UDP ポート " + port + " は " + *holder + " が使用中です");
    std::fprintf(stderr, "lumbrine-headless: %s\n", line.c_str());
}

int run() {
    const MIDIBackend backend;
    RunLoop loop;
    std::function<void()> end; // set before the loop runs
    PosixProcessEnd process;
    const TerminationSignals signals([&] {
        process.within(endingTime);
        loop.post([&] { end(); });
    });
    const LinuxSystemInfo system;
    const Bilingual text(prefersJapanese(system.preferredLanguages()));
    LineOutput output = standardOutput(text);
    RealRuntime runtime(loop);
    FlightRecorder recorder(runtime, blackboxSetting(system.environment("LUMBRINE_BLACKBOX"), system.stateFolder()),
                            "lumbrine-headless " LUMBRINE_VERSION ", Linux", text);
    std::shared_ptr<ReceiverModel> model;
    // The model starts when the MIDI system is known, because it creates its ports at once.
    int status = 0;
    const std::unique_ptr<MIDIServices> midi = backend.services(runtime, [&] {
        if (!model) return;
        model->start();
        if (model->published().health.udp.state != LinkHealth::State::down) return;
        // A service manager may start it again when the port is free.
        tellWhoHasThePort(model->port(), text);
        status = 1;
        PosixProcessEnd::setStatus(status);
        end();
    });
    LinuxDatagramSockets sockets;
    PosixStreamSockets streams;
    AvahiAdvertiser advertiser;
    NlohmannJSON json(text);
    NoAccessibility accessibility;
    OpenSSLSecrets secrets;
    model = ReceiverModel::create(
        recorder.recorded({runtime, *midi, sockets, advertiser, system, streams, json, accessibility, {}, &secrets}),
        text, recorder.recorded([&output](const std::string& line) { output.print(line); }));
    recorder.keepUp(model);
    std::optional<KeyKeeper> keys;
    if (const auto folder = system.stateFolder()) keys.emplace(runtime, *folder, secrets, model, text);
    const NetworkWatch network(runtime, [&model] {
        if (model) model->readAddress();
    });
    end = [&] { endReceiver(loop, runtime, process, streams, model); };
    ServiceStatus serviceStatus(system);
    followStatus(loop, serviceStatus, model, text);
    const CheckService checks(loop, model->port(), [&]() -> std::optional<ReceiverNow> {
        if (!model) return std::nullopt;
        return ReceiverNow{.published = model->published(), .outputBacklog = output.backlog()};
    });
    loop.run();
    return status;
}

} // namespace
} // namespace lumbrine

int main(int count, char** arguments) {
    using namespace lumbrine;
    const std::span<const char* const> given(arguments, static_cast<std::size_t>(count));
    const std::string_view asked = given.size() > 1 ? given[1] : "";
    if (asked == "--check" && given.size() == 2) return checkAndPrint();
    if (asked == "--check" && given.size() == 4 && std::string_view(given[2]) == "--save")
        return checkAndPrint(given[3]);
    if (asked == "--pair" && given.size() <= 3) return pairAndPrint(given.size() == 3 ? given[2] : "");
    if (asked == "--forget" && given.size() == 3) return forgetAndPrint(given[2]);
    if (asked == "--forget-all" && given.size() == 2) return forgetAllAndPrint();
    if (const auto answer = answerCommandLine(program, given.subspan(count > 0 ? 1 : 0))) {
        std::fputs(answer->output.c_str(), stdout);
        std::fputs(answer->error.c_str(), stderr);
        return answer->status;
    }
    return run();
}
