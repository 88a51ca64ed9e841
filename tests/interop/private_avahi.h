// For tests: a private message bus and Avahi daemon. The daemon uses only the loopback interface, and clients reach it
// only over the private bus, so the local network and the user's daemon are not touched. Outside a private world, only
// one test at a time has one; others wait.
//
//     PrivateAvahi avahi;                     // bus and daemon run; this process and its children will find them
//     ChildProcess receiver({LUMBRINE_BIN_DIR "/lumbrine-headless"});
//     waitUntil([&] { return !avahi.browse("_lumbrine._udp").empty(); });
//
// Every wait has a limit and throws std::runtime_error with the daemon's output when it is exceeded.
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

    // The daemon must run as root, which every user is in a private world.
    static bool possible();

    // Sets DBUS_SYSTEM_BUS_ADDRESS of this process for good: create the object before other threads run.
    PrivateAvahi() : PrivateAvahi(Options{}) {}
    explicit PrivateAvahi(Options options);
    ~PrivateAvahi();

    // Start the bus and the daemon, and return when they are ready. Precondition: it does not run. The daemon needs the
    // bus.
    void startBus();
    void startDaemon();

    // End them by SIGKILL, so that they cannot say goodbye, and return when they have ended.
    void killBus();
    void killDaemon();

    // Announces a service of another program until the result is destroyed.
    std::unique_ptr<ChildProcess> publish(const std::string& name, const std::string& type, std::uint16_t port) const;

    // The services of a type ("_lumbrine._udp") that avahi-browse finds and resolves now. Takes about a second.
    std::vector<BrowsedService> browse(const std::string& type) const;

    // Waits until a service of this name is found; absent when none is found for a long time.
    std::optional<BrowsedService> find(const std::string& type, const std::string& name) const;

private:
    const Turn turn{"avahi"};
    TemporaryFolder folder;
    const std::filesystem::path socket;
    std::unique_ptr<ChildProcess> bus;
    std::unique_ptr<ChildProcess> daemon;
};

// Parses the output of `avahi-browse -p` and its escapes: "Anna\039s\032Studio" is "Anna's Studio".
std::vector<BrowsedService> resolvedServices(const std::string& output);

} // namespace lumbrine::interop
