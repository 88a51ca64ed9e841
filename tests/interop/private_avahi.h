// A message bus and an Avahi daemon of the test's own. The daemon keeps to the loopback interface and clients reach it
// over the private bus alone, so neither the local network nor a daemon of the user's is touched. Outside an own world,
// tests that want one at the same time wait for each other.
//
//     PrivateAvahi avahi;                     // bus and daemon run; this process and its children will find them
//     ChildProcess receiver({LUMBRINE_BIN_DIR "/lumbrine-headless"});
//     waitUntil([&] { return !avahi.browse("_lumbrine._udp").empty(); });
//
// Every wait has a limit and throws std::runtime_error with the daemon's output when it is over.
#pragma once

#include "tests/interop/child_process.h"
#include "tests/interop/own_world.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine::interop {

struct BrowsedService {
    std::string name;
    std::string address;
    std::uint16_t port;
};

class PrivateAvahi {
public:
    struct Options {
        bool bus = true;
        bool daemon = true;
    };

    // The daemon wants to be root, which everybody is in an own world.
    static bool possible();

    // Sets DBUS_SYSTEM_BUS_ADDRESS of this process for its whole life: make the object before other threads run.
    PrivateAvahi() : PrivateAvahi(Options{}) {}
    explicit PrivateAvahi(Options options);
    ~PrivateAvahi();

    // Each returns when it is ready. Not while it runs; the daemon needs the bus.
    void startBus();
    void startDaemon();

    // Without a goodbye (SIGKILL). Return when it is gone.
    void killBus();
    void killDaemon();

    // Announces a service of another program, and keeps it until it is destroyed.
    std::unique_ptr<ChildProcess> publish(const std::string& name, const std::string& type, std::uint16_t port) const;

    // What avahi-browse finds and resolves now ("_lumbrine._udp"); takes about a second.
    std::vector<BrowsedService> browse(const std::string& type) const;

    // Looks until a service of that name is found; absent when none is after a long time.
    std::optional<BrowsedService> find(const std::string& type, const std::string& name) const;

private:
    const Turn turn{"avahi"};
    TemporaryFolder folder;
    const std::filesystem::path socket;
    std::unique_ptr<ChildProcess> bus;
    std::unique_ptr<ChildProcess> daemon;
};

// What `avahi-browse -p` writes, its escapes undone: "Anna\039s\032Studio" is "Anna's Studio".
std::vector<BrowsedService> resolvedServices(const std::string& output);

} // namespace lumbrine::interop
