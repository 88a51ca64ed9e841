#include "tests/interop/private_avahi.h"

#include "tests/interop/local_server.h"
#include "tests/interop/waiting.h"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace lumbrine::interop {

namespace {

const char* const busConfiguration = R"(<busconfig>
  <type>system</type>
  <auth>EXTERNAL</auth>
  <listen>unix:path=SOCKET</listen>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
  </policy>
</busconfig>
)";

const char* const daemonConfiguration = R"([server]
host-name=lumbrine-test
use-ipv4=yes
use-ipv6=no
allow-interfaces=lo
enable-dbus=yes
disallow-other-stacks=no
ratelimit-interval-usec=0
[wide-area]
enable-wide-area=no
[publish]
publish-workstation=no
publish-hinfo=no
)";

void write(const std::filesystem::path& path, const std::string& text) {
    std::ofstream(path) << text;
}

std::string withSocket(std::string text, const std::string& socket) {
    return text.replace(text.find("SOCKET"), 6, socket);
}

std::vector<std::string> split(const std::string& line, char separator) {
    std::vector<std::string> fields;
    std::istringstream stream(line);
    for (std::string field; std::getline(stream, field, separator);)
        fields.push_back(field);
    return fields;
}

std::string unescaped(const std::string& text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size() && std::isdigit(static_cast<unsigned char>(text[i + 1])) != 0) {
            plain += static_cast<char>(std::stoi(text.substr(i + 1, 3)));
            i += 3;
        } else {
            if (text[i] == '\\' && i + 1 < text.size()) ++i;
            plain += text[i];
        }
    }
    return plain;
}

} // namespace

std::vector<BrowsedService> resolvedServices(const std::string& output) {
    // =;interface;protocol;name;type;domain;host;address;port;texts
    std::vector<BrowsedService> services;
    for (const std::string& line : split(output, '\n')) {
        const std::vector<std::string> fields = split(line, ';');
        if (fields.size() < 9 || fields[0] != "=") continue;
        services.push_back({unescaped(fields[3]), fields[7], static_cast<std::uint16_t>(std::stoi(fields[8]))});
    }
    return services;
}

bool PrivateAvahi::possible() {
    return ::geteuid() == 0;
}

// libdbus reads the bus's address once in the life of a process, so every bus of a process has the same.
PrivateAvahi::PrivateAvahi(Options options)
    : socket(std::filesystem::temp_directory_path() / ("lumbrine-bus-" + std::to_string(::getpid()))) {
    write(folder.path / "bus.conf", withSocket(busConfiguration, socket));
    write(folder.path / "avahi.conf", daemonConfiguration);
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + socket.string()).c_str(), 1);
    if (options.bus) startBus();
    if (options.daemon) startDaemon();
}

PrivateAvahi::~PrivateAvahi() {
    daemon.reset();
    bus.reset();
    std::error_code ignored;
    std::filesystem::remove(socket, ignored);
}

void PrivateAvahi::startBus() {
    std::filesystem::remove(socket);
    bus = std::make_unique<ChildProcess>(std::vector<std::string>{
        "dbus-daemon", "--config-file=" + (folder.path / "bus.conf").string(), "--nofork", "--nopidfile"});
    if (!waitUntil([&] { return !bus->running() || isListenedAt(socket); }) || !bus->running())
        throw std::runtime_error("dbus-daemon does not start: " + bus->output());
}

void PrivateAvahi::startDaemon() {
    daemon = std::make_unique<ChildProcess>(std::vector<std::string>{"avahi-daemon", "-f", folder.path / "avahi.conf",
                                                                     "--no-drop-root", "--no-chroot", "--no-rlimits"});
    const auto ready = [this] { return daemon->output().find("Server startup complete") != std::string::npos; };
    if (!waitUntil([&] { return !daemon->running() || ready(); }) || !daemon->running())
        throw std::runtime_error("avahi-daemon does not start: " + daemon->output());
}

void PrivateAvahi::killBus() {
    if (bus) bus->signal(SIGKILL);
    bus.reset();
}

void PrivateAvahi::killDaemon() {
    if (daemon) daemon->signal(SIGKILL);
    daemon.reset();
}

std::unique_ptr<ChildProcess> PrivateAvahi::publish(const std::string& name, const std::string& type,
                                                    std::uint16_t port) const {
    auto publisher = std::make_unique<ChildProcess>(
        std::vector<std::string>{"avahi-publish", "-s", name, type, std::to_string(port)});
    const auto ready = [&] { return publisher->output().find("Established") != std::string::npos; };
    if (!waitUntil(ready)) throw std::runtime_error("avahi-publish does not publish: " + publisher->output());
    return publisher;
}

std::vector<BrowsedService> PrivateAvahi::browse(const std::string& type) const {
    return resolvedServices(runCommand({"avahi-browse", "-rpt", type}).output);
}

std::optional<BrowsedService> PrivateAvahi::find(const std::string& type, const std::string& name) const {
    std::optional<BrowsedService> result;
    waitUntil([&] {
        for (BrowsedService& service : browse(type))
            if (service.name == name) result = std::move(service);
        return result.has_value();
    });
    return result;
}

} // namespace lumbrine::interop
