#include "app/check_program.h"

#include "app/check_answer.h"
#include "app/computer_checks.h"
#include "app/support_report.h"
#include "model/state/configuration.h"
#include "platform/linux/avahi_browser.h"
#include "platform/linux/avahi_session.h"
#include "platform/linux/firewall.h"
#include "platform/linux/linux_datagram_sockets.h"
#include "platform/linux/linux_system_info.h"
#include "platform/linux/local_questions.h"
#include "platform/linux/midi_backend.h"
#include "platform/linux/port_holder.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"

#include <cstdio>
#include <expected>
#include <memory>
#include <utility>
#include <vector>

namespace lumbrine {

namespace {

constexpr Duration answerTime = seconds(1.5);
constexpr Duration browsingTime = seconds(1.2); // a daemon that knows the services tells them at once

bool isFree(std::uint16_t port) {
    LinuxDatagramSockets sockets;
    const int fd = sockets.open();
    if (fd < 0) return false;
    sockets.setDualStack(fd);
    const bool bound = sockets.bind(fd, port) >= 0;
    sockets.close(fd);
    return bound;
}

bool hasMIDI(const MIDIBackend& backend) {
    RunLoop loop;
    RealRuntime runtime(loop);
    bool isThere = false;
    std::unique_ptr<MIDIServices> midi;
    midi = backend.services(runtime, [&] {
        MIDIClientRef client = 0;
        isThere = midi->createClient("Lumbrine check", client) == 0;
        loop.stop();
    });
    loop.run();
    runtime.shutDown();
    return isThere;
}

std::vector<FoundService> receiversOnTheNetwork() {
    RunLoop loop;
    std::vector<FoundService> found;
    AvahiBrowser browser;
    const auto search = browser.browse("_lumbrine._udp", [&](const FoundService& service) {
        loop.post([&found, service] { found.push_back(service); });
    });
    if (!search) return {};
    loop.postAfter(browsingTime, [&loop] { loop.stop(); });
    loop.run();
    return found;
}

GatewayFacts gatewayFacts(const LinuxSystemInfo& system) {
    constexpr std::uint16_t usual = 52780;
    const std::uint16_t port = parsePort(system.environment("QV_WEB_PORT").value_or("")).value_or(usual);
    return {.port = port, .isTaken = isListenedTo(port), .holder = listenerOnTCPPort(port)};
}

// What the receiver says, or what the computer looks like without one.
CheckAnswer askOrLook(const MIDIBackend& backend, const LinuxSystemInfo& system, const Bilingual& text) {
    const std::uint16_t port = Configuration::read(system).port;
    const auto answer = askLocally(checkName(port), checkQuestion(text), answerTime);
    if (answer)
        if (auto told = readAnswer(*answer)) return *std::move(told);
    std::vector<Check> checks;
    if (!answer && answer.error() == NoAnswer::nobodyThere) {
        const bool portIsFree = isFree(port);
        checks = computerChecks({.port = port,
                                 .portIsFree = portIsFree,
                                 .portHolder = portIsFree ? std::nullopt : holderOfUDPPort(port),
                                 .address = system.primaryIPv4().value_or("127.0.0.1"),
                                 .announces = AvahiSession::daemonAnswers(),
                                 .hasMIDI = hasMIDI(backend)},
                                text);
    } else {
        checks = {silentReceiver(port, text)};
    }
    return {.anyWrong = isAnyWrong(checks), .announcedAs = {}, .list = listed(checks)};
}

} // namespace

int checkAndPrint(const std::string& report) {
    const MIDIBackend backend;
    const LinuxSystemInfo system;
    const Bilingual text(prefersJapanese(system.preferredLanguages()));
    const CheckAnswer answer = askOrLook(backend, system, text);
    std::vector<Check> around =
        networkChecks({.announcedAs = answer.announcedAs, .found = receiversOnTheNetwork()}, text);
    around.push_back(gatewayCheck(gatewayFacts(system), text));
    if (const auto firewall = activeFirewall())
        around.push_back(firewallCheck(*firewall, Configuration::read(system).port, text));
    const std::string list = answer.list + listed(around);
    std::fputs(list.c_str(), stdout);
    const auto saved =
        report.empty() ? std::expected<void, std::string>() : saveSupportReport(recordingPath(system), report, list);
    if (!saved) std::fprintf(stderr, "lumbrine-headless: %s\n", saved.error().c_str());
    return answer.anyWrong || isAnyWrong(around) || !saved ? 1 : 0;
}

} // namespace lumbrine
