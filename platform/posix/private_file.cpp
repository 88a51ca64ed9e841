#include "platform/posix/private_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace lumbrine {

namespace {

std::string lastError(const std::string& what) {
    return what + ": " + std::generic_category().message(errno);
}

} // namespace

std::optional<std::string> readSmallFile(const std::string& path, std::size_t most) {
    std::ifstream file(path, std::ios::binary);
    std::string text(most + 1, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (!file.eof()) return std::nullopt;
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

std::expected<void, std::string> replacePrivateFile(const std::string& path, const std::string& text) {
    std::error_code failed;
    const auto folder = std::filesystem::path(path).parent_path();
    std::filesystem::create_directories(folder, failed);
    if (failed) return std::unexpected(folder.string() + ": " + failed.message());
    const std::string fresh = path + ".new";
    ::unlink(fresh.c_str()); // what a crash may have left, perhaps readable for others
    const int file = ::open(fresh.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (file < 0) return std::unexpected(lastError(fresh));
    const bool stored =
        ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size()) && ::fsync(file) == 0;
    const std::string problem = stored ? "" : lastError(fresh);
    ::close(file);
    if (!stored) return std::unexpected(problem);
    if (::rename(fresh.c_str(), path.c_str()) != 0) return std::unexpected(lastError(path));
    return {};
}

} // namespace lumbrine
