#include "web/gateway/key_file.h"

#include "platform/linux/running_page.h"
#include "platform/posix/private_file.h"
#include "seal/key_list.h"

#include <sys/random.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace lumbrine::web {

std::optional<std::string> keyFilePath(const EnvironmentLookup& environment) {
    const auto folder = stateFolderIn(environment);
    if (!folder) return std::nullopt;
    return *folder + pageKeyName;
}

std::optional<std::string> sealKeyFilePath(const EnvironmentLookup& environment) {
    const auto folder = stateFolderIn(environment);
    if (!folder) return std::nullopt;
    return *folder + seal::keyFileName;
}

std::optional<PairingKey> keyInFile(std::string_view text) {
    if (text.ends_with('\n')) text.remove_suffix(1);
    return PairingKey::parse(text);
}

std::optional<PairingKey> readKey(const std::string& path) {
    const auto text = readSmallFile(path, PairingKey::length + 1);
    return text ? keyInFile(*text) : std::nullopt;
}

std::optional<PairingKey> readSealKey(const std::string& path) {
    const auto text = readSmallFile(path, seal::longestKeyFile);
    const auto keys = seal::keysIn(text.value_or(""));
    if (keys.empty()) return std::nullopt;
    return keys.front().key;
}

std::expected<PairingKey, std::string> makeKey(const std::string& path) {
    std::array<std::uint8_t, 16> bits{};
    if (::getentropy(bits.data(), bits.size()) != 0)
        return std::unexpected("getentropy: " + std::generic_category().message(errno));
    PairingKey key(bits);
    if (auto stored = replacePrivateFile(path, key.text() + "\n"); !stored) return std::unexpected(stored.error());
    return key;
}

} // namespace lumbrine::web
