#include "platform/linux/xdg_autostart.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <system_error>
#include <utility>

namespace lumbrine {

namespace {

constexpr std::string_view entryName = "com.tarnwick.lumbrine.desktop";

std::string trimmed(std::string_view text) {
    const auto begin = text.find_first_not_of(" \t\r");
    if (begin == std::string_view::npos) return {};
    return std::string(text.substr(begin, text.find_last_not_of(" \t\r") - begin + 1));
}

// One argument of an Exec line. It is escaped twice: for the quotes, and again for string values of the file.
std::string quotedForExec(std::string_view argument) {
    std::string quoted = "\"";
    for (const char c : argument) {
        if (c == '%') quoted += '%';
        if (c == '\\') quoted += "\\\\\\";
        if (c == '"' || c == '`' || c == '$') quoted += "\\\\";
        quoted += c;
    }
    return quoted + '"';
}

std::string systemError(const std::string& path) {
    return path + ": " + std::generic_category().message(errno);
}

// Writes a new file and renames it over the old one, so that no reader ever sees half an entry.
std::expected<void, std::string> replaceFile(const std::string& path, const std::string& text) {
    const std::string fresh = path + ".new";
    const int fd = ::open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0644);
    if (fd < 0) return std::unexpected(systemError(fresh));
    const bool written = ::write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    const bool stored = written && ::fsync(fd) == 0;
    std::optional<std::string> problem;
    if (!stored) problem = systemError(fresh);
    ::close(fd);
    if (!problem && ::rename(fresh.c_str(), path.c_str()) != 0) problem = systemError(path);
    if (!problem) return {};
    ::unlink(fresh.c_str());
    return std::unexpected(*problem);
}

} // namespace

XdgAutostart::Place XdgAutostart::Place::of(const SystemInfo& system) {
    Place place;
    const std::string configuration = system.environment("XDG_CONFIG_HOME").value_or("");
    const std::string home = system.environment("HOME").value_or("");
    if (configuration.starts_with('/')) {
        place.folder = configuration + "/autostart";
    } else if (!home.empty()) {
        place.folder = home + "/.config/autostart";
    }
    std::error_code ignored;
    place.program = std::filesystem::read_symlink("/proc/self/exe", ignored).string();
    return place;
}

XdgAutostart::XdgAutostart(Place place)
    : folder(std::move(place.folder)), path(folder + "/" + std::string(entryName)), program(std::move(place.program)) {}

bool XdgAutostart::isEnabled() {
    std::ifstream file(path);
    if (folder.empty() || !file) return false;
    return startsAtLogin(std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()));
}

std::expected<void, std::string> XdgAutostart::registerApplication() {
    if (folder.empty()) return std::unexpected("neither XDG_CONFIG_HOME nor HOME is set");
    if (program.empty()) return std::unexpected("/proc/self/exe cannot be read");
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) return std::unexpected(folder + ": " + error.message());
    return replaceFile(path, autostartEntry(program));
}

std::expected<void, std::string> XdgAutostart::unregisterApplication() {
    if (::unlink(path.c_str()) == 0 || errno == ENOENT) return {};
    return std::unexpected(systemError(path));
}

std::string autostartEntry(std::string_view program) {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Version=1.5\n"
           "Name=Lumbrine\n"
           "Comment=Let a phone or tablet be the faders of Pro Tools\n"
           "Comment[ja]=スマートフォンやタブレットを Pro Tools のフェーダーに\n"
           "Icon=com.tarnwick.lumbrine\n"
           "Exec=" +
           quotedForExec(program) +
           " --hidden\n"
           "Terminal=false\n";
}

bool startsAtLogin(std::string_view entry) {
    bool inEntry = false;
    bool hasExec = false;
    std::istringstream lines{std::string(entry)};
    for (std::string line; std::getline(lines, line);) {
        const std::string text = trimmed(line);
        if (text.starts_with('[')) {
            inEntry = text == "[Desktop Entry]";
            continue;
        }
        const auto equals = text.find('=');
        if (!inEntry || text.starts_with('#') || equals == std::string::npos) continue;
        const std::string key = trimmed(std::string_view(text).substr(0, equals));
        const std::string value = trimmed(std::string_view(text).substr(equals + 1));
        if (key == "Hidden" && value == "true") return false;
        if (key == "X-GNOME-Autostart-enabled" && value == "false") return false;
        if (key == "Exec" && !value.empty()) hasExec = true;
    }
    return hasExec;
}

} // namespace lumbrine
