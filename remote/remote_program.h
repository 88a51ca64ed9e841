// The program lumbrine-remote: finds the receiver, then shows the view or runs the script.
#pragma once

#include "base/bilingual.h"
#include "platform/api/datagram_sockets.h"
#include "platform/api/runtime.h"
#include "platform/api/service_discovery.h"
#include "remote/remote_arguments.h"
#include "remote/remote_client.h"
#include "remote/script_runner.h"
#include "remote/terminal.h"
#include "remote/terminal_app.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace lumbrine::remote {

// The program's dependencies. All of them must outlive it.
struct RemoteSurroundings {
    Runtime& runtime;
    DatagramSockets& sockets;
    ServiceBrowser& browser;
    Secrets* secrets;   // for a key
    Terminal* terminal; // null for output as lines instead of the full-screen view
    Bilingual text;

    std::function<void(const std::string& line)> print;    // standard output
    std::function<void(const std::string& line)> complain; // standard error
    std::function<void(int status)> end;                   // requests the end; must not destroy the program inside
};

// Main thread only.
class RemoteProgram {
public:
    RemoteProgram(RemoteSurroundings given, RemoteArguments what);

    // Releases the held faders.
    ~RemoteProgram();
    RemoteProgram(const RemoteProgram&) = delete;
    RemoteProgram& operator=(const RemoteProgram&) = delete;

    // Call once. Calls `end` with status 1 when there is no receiver to connect to, when none answers although the
    // output is lines, or when the script fails.
    void start();

private:
    void search();
    void connectTo(const HostAndPort& receiver, const std::string& shownAs);
    void hear(const std::string& line);
    void hearLoss();
    void endWithoutAnswer();
    void fail(const std::string& why);

    const RemoteSurroundings surroundings;
    const RemoteArguments arguments;
    RemoteClient client;
    std::optional<ScriptRunner> runner;
    std::optional<TerminalApp> view;
    bool found = false;
    bool tookOver = false;
    std::shared_ptr<int> alive = std::make_shared<int>();
    std::unique_ptr<ServiceSearch> serviceSearch; // last member: its thread posts jobs until it ends
};

} // namespace lumbrine::remote
