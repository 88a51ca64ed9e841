#include "web/gateway/key_file.h"

#include "platform/linux/running_page.h"

#include <fcntl.h>
#include <sys/random.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace lumbrine::web {

namespace {

std::string lastError(const std::string& what) {
    return what + ": " + std::generic_category().message(errno);
}

// Under another name first, so that nobody ever reads half a key.
std::expected<void, std::string> replaceFile(const std::string& path, const std::string& text) {
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

} // namespace

std::optional<std::string> keyFilePath(const EnvironmentLookup& environment) {
    const auto folder = stateFolderOf(environment);
    if (!folder) return std::nullopt;
    return *folder + pageKeyName;
}

std::optional<PairingKey> keyInFile(std::string_view text) {
    if (text.ends_with('\n')) text.remove_suffix(1);
    return PairingKey::parse(text);
}

std::optional<PairingKey> readKey(const std::string& path) {
    std::ifstream file(path);
    std::array<char, PairingKey::length + 2> text{}; // more than that is no key
    file.read(text.data(), text.size());
    return keyInFile({text.data(), static_cast<std::size_t>(file.gcount())});
}

std::expected<PairingKey, std::string> makeKey(const std::string& path) {
    std::error_code failed;
    const auto folder = std::filesystem::path(path).parent_path();
    std::filesystem::create_directories(folder, failed);
    if (failed) return std::unexpected(folder.string() + ": " + failed.message());
    std::array<std::uint8_t, 16> bits{};
    if (::getentropy(bits.data(), bits.size()) != 0) return std::unexpected(lastError("getentropy"));
    PairingKey key(bits);
    if (auto stored = replaceFile(path, key.text() + "\n"); !stored) return std::unexpected(stored.error());
    return key;
}

} // namespace lumbrine::web
