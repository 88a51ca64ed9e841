#include "platform/linux/port_holder.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string_view>
#include <system_error>

namespace lumbrine {

namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool hasOpen(const fs::path& process, const std::string& link) {
    std::error_code hidden;
    fs::directory_iterator files(process / "fd", hidden);
    return !hidden && std::any_of(begin(files), end(files), [&link](const fs::directory_entry& file) {
        std::error_code gone;
        return fs::read_symlink(file.path(), gone) == link;
    });
}

bool isNumber(const std::string& name) {
    return std::ranges::all_of(name, [](char c) { return c >= '0' && c <= '9'; });
}

} // namespace

// "  12: 00000000000000000000000000000000:CDDC 0000...:0000 07 00000000:00000000 00:00000000 00000000 1000 0 34567 2"
std::optional<std::string> socketOfPort(const std::string& table, std::uint16_t port, std::string_view state) {
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream stream(line);
        std::array<std::string, 10> fields;
        for (std::string& field : fields)
            stream >> field;
        const std::string_view local = fields[1];
        const std::size_t colon = local.find(':');
        if (!stream || colon == std::string_view::npos || fields[3] != state) continue;
        unsigned found = 0;
        const auto read = std::from_chars(local.data() + colon + 1, local.data() + local.size(), found, 16);
        if (read.ec == std::errc() && found == port) return fields[9];
    }
    return std::nullopt;
}

namespace {

std::optional<std::string> programWith(const std::string& socket) {
    const std::string link = "socket:[" + socket + "]";
    std::error_code hidden;
    for (const fs::directory_entry& process : fs::directory_iterator("/proc", hidden)) {
        const std::string number = process.path().filename();
        if (!isNumber(number) || !hasOpen(process.path(), link)) continue;
        const std::string command = contentOf(process.path() / "cmdline"); // its words end in zero bytes
        return fs::path(command.c_str()).filename().string() + " (process " + number + ")";
    }
    return std::nullopt;
}

std::optional<std::string> udpSocket(std::uint16_t port) {
    auto socket = socketOfPort(contentOf("/proc/net/udp6"), port, unconnected);
    return socket ? socket : socketOfPort(contentOf("/proc/net/udp"), port, unconnected);
}

std::optional<std::string> tcpListener(std::uint16_t port) {
    auto socket = socketOfPort(contentOf("/proc/net/tcp6"), port, listening);
    return socket ? socket : socketOfPort(contentOf("/proc/net/tcp"), port, listening);
}

} // namespace

std::optional<std::string> holderOfUDPPort(std::uint16_t port) {
    const auto socket = udpSocket(port);
    return socket ? programWith(*socket) : std::nullopt;
}

bool isListenedTo(std::uint16_t tcpPort) {
    return tcpListener(tcpPort).has_value();
}

std::optional<std::string> listenerOnTCPPort(std::uint16_t port) {
    const auto socket = tcpListener(port);
    return socket ? programWith(*socket) : std::nullopt;
}

} // namespace lumbrine
