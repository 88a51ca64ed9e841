// lumbrine-web: the page for browsers, and the way of their messages to the receiver.
#include "base/bilingual.h"
#include "platform/linux/linux_system_info.h"
#include "platform/linux/qr_lines.h"
#include "platform/linux/running_page.h"
#include "platform/posix/line_output.h"
#include "platform/posix/posix_process_end.h"
#include "platform/posix/primary_ipv4.h"
#include "web/gateway/gateway.h"
#include "web/gateway/gateway_arguments.h"
#include "web/gateway/key_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>

namespace lumbrine::web {
namespace {

constexpr Duration lastLines = seconds(0.5); // for those that nobody reads

// As in multicast DNS: without a domain, and without ".local".
std::string hostName() {
    std::array<char, 256> name{};
    if (::gethostname(name.data(), name.size() - 1) != 0) return "localhost";
    const std::string whole = name.data();
    return whole.substr(0, whole.find('.'));
}

class Program {
public:
    Program()
        : text(prefersJapanese(system.preferredLanguages())), output(STDOUT_FILENO, [](std::size_t) { return ""; }) {}

    ~Program() { process.within(lastLines); }

    int run(const GatewayArguments& arguments) {
        const auto environment = [&](const std::string& name) { return system.environment(name); };
        const auto path = keyFilePath(environment);
        if (!path) return fail(text("HOME is not set", "HOME が設定されていません"));
        if (arguments.newKey || !readKey(*path)) {
            const auto made = makeKey(*path);
            if (!made) return fail(made.error());
        }
        if (arguments.newKey) {
            printAddress(arguments, arguments.port, *path);
            return 0;
        }
        const auto served =
            serve({.port = arguments.port,
                   .receiverHost = arguments.receiverHost,
                   .receiverPort = arguments.receiverPort,
                   .hostName = hostName(),
                   .certificateChain = arguments.certificateChain,
                   .privateKey = arguments.privateKey,
                   .key = [path] { return readKey(*path); },
                   .sealKey = sealKeySource(arguments)},
                  [&](std::uint16_t port) {
                      announceToPrograms(arguments, port, *path);
                      say("✓ Browsers on :" + std::to_string(port), "✓ ブラウザ受付開始 :" + std::to_string(port));
                      printAddress(arguments, port, *path);
                  });
        if (!served) return fail(sentence(served.error(), arguments));
        return 0;
    }

private:
    void say(const std::string& english, const std::string& japanese) { output.print(text(english, japanese)); }

    int fail(const std::string& why) {
        say("✗ Browsers: " + why, "✗ ブラウザ: " + why);
        return 1;
    }

    // A receiver on this computer shows its keys to its user's programs.
    std::function<std::optional<PairingKey>()> sealKeySource(const GatewayArguments& arguments) const {
        const auto path = sealKeyFilePath([this](const std::string& name) { return system.environment(name); });
        if (arguments.sealKey || !arguments.isReceiverHere() || !path)
            return [given = arguments.sealKey] { return given; };
        return [path] { return readSealKey(*path); };
    }

    std::string sentence(const StartProblem& problem, const GatewayArguments& arguments) const {
        const std::string port = "TCP " + std::to_string(arguments.port);
        const std::string receiver = arguments.receiverHost;
        switch (problem.of) {
        case StartProblem::Of::port:
            return port + ": " + problem.why;
        case StartProblem::Of::receiver:
            return receiver + ": " + problem.why;
        default:
            return text("certificate: ", "証明書: ") + problem.why;
        }
    }

    // So that the receiver's window can show the address, too.
    void announceToPrograms(const GatewayArguments& arguments, std::uint16_t port, const std::string& keyPath) {
        if (!arguments.isReceiverHere()) return;
        const std::string folder = std::filesystem::path(keyPath).parent_path();
        notice.emplace(folder, RunningPage{.secure = !arguments.certificateChain.empty(),
                                           .port = port,
                                           .receiverPort = arguments.receiverPort});
    }

    void printAddress(const GatewayArguments& arguments, std::uint16_t port, const std::string& path) {
        const auto key = readKey(path);
        if (!key) return;
        const std::string primary = system.primaryIPv4().value_or(hostName() + ".local");
        const auto addressAt = [&](const std::string& host) {
            return (arguments.certificateChain.empty() ? "http://" : "https://") + host + ":" + std::to_string(port) +
                   "/#" + key->text();
        };
        const std::string address = addressAt(primary);
        say("  Open on the phone: " + address, "  スマートフォンで開く: " + address);
        for (const std::string& other : reachableIPv4(listIPv4Interfaces()))
            if (other != primary)
                say("  In another network: " + addressAt(other), "  別のネットワーク: " + addressAt(other));
        const bool onTerminal = ::isatty(STDOUT_FILENO) == 1;
        for (const std::string& line : qrLines(address, onTerminal ? QRColours::blackOnWhite : QRColours::lightBlocks))
            output.print(line);
    }

    PosixProcessEnd process;
    const LinuxSystemInfo system;
    const Bilingual text;
    LineOutput output;
    std::optional<PageNotice> notice;
};

} // namespace
} // namespace lumbrine::web

int main(int count, char** arguments) {
    using namespace lumbrine::web;
    ::umask(0077); // the key and its folder are the user's alone
    const lumbrine::LinuxSystemInfo system;
    const auto read = readGatewayArguments({arguments + 1, arguments + count},
                                           [&](const std::string& name) { return system.environment(name); });
    if (!read) {
        std::fputs(read.error().output.c_str(), stdout);
        std::fputs(read.error().error.c_str(), stderr);
        return read.error().status;
    }
    return Program().run(*read);
}
