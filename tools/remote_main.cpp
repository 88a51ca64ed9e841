// lumbrine-remote: the terminal client on real sockets.
#include "platform/linux/avahi_browser.h"
#include "platform/linux/linux_system_info.h"
#include "platform/linux/openssl_secrets.h"
#include "platform/posix/posix_datagram_sockets.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"
#include "platform/posix/termination_signals.h"
#include "remote/curses_terminal.h"
#include "remote/remote_program.h"

#include <cstdio>

namespace {

using namespace lumbrine;
using namespace lumbrine::remote;

int run(const RemoteArguments& arguments, const Bilingual& text) {
    RunLoop loop;
    const TerminationSignals signals([&loop] { loop.stop(); });
    RealRuntime runtime(loop);
    PosixDatagramSockets sockets;
    AvahiBrowser browser;
    OpenSSLSecrets secrets;
    int status = 0;
    std::vector<std::string> complaints; // printed after the full-screen display has been left
    {
        std::unique_ptr<CursesTerminal> terminal;
        if (!arguments.plain()) terminal = std::make_unique<CursesTerminal>();
        RemoteProgram program({runtime, sockets, browser, &secrets, terminal.get(), text,
                               [](const std::string& line) {
                                   std::puts(line.c_str());
                                   std::fflush(stdout);
                               },
                               [&](const std::string& line) { complaints.push_back(line); },
                               [&](int wanted) {
                                   status = wanted;
                                   loop.stop();
                               }},
                              arguments);
        program.start();
        loop.run();
        runtime.shutDown();
    }
    for (const std::string& line : complaints)
        std::fprintf(stderr, "lumbrine-remote: %s\n", line.c_str());
    return status;
}

} // namespace

int main(int argc, char** argv) {
    const auto arguments = parseArguments({argv + 1, argv + argc}, LUMBRINE_VERSION);
    if (!arguments) {
        const EarlyEnd& end = arguments.error();
        std::fputs(end.text.c_str(), end.status == 0 ? stdout : stderr);
        return end.status;
    }
    const LinuxSystemInfo system;
    const Bilingual text(prefersJapanese(system.preferredLanguages()));
    if (!arguments->plain() && !CursesTerminal::possible()) {
        std::fputs(text("lumbrine-remote: the view needs a terminal; --watch and --send do not\n",
                        "lumbrine-remote: 画面表示には端末が必要です（--watch と --send では不要）\n")
                       .c_str(),
                   stderr);
        return 2;
    }
    return run(*arguments, text);
}
