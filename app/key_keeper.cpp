#include "app/key_keeper.h"

#include "platform/posix/private_file.h"
#include "seal/session_key.h"

#include <algorithm>
#include <array>
#include <utility>

namespace lumbrine {

namespace {

std::vector<PairingKey> withoutNames(const std::vector<seal::NamedKey>& named) {
    std::vector<PairingKey> keys;
    keys.reserve(named.size());
    for (const seal::NamedKey& each : named)
        keys.push_back(each.key);
    return keys;
}

} // namespace

std::vector<seal::NamedKey> KeyFile::read() const {
    return seal::keysIn(readSmallFile(path, seal::longestKeyFile).value_or(""));
}

std::expected<std::vector<seal::NamedKey>, std::string> KeyFile::readOrMake() {
    std::vector<seal::NamedKey> keys = read();
    if (!keys.empty()) return keys;
    keys.push_back(makeKey("Lumbrine", keys));
    if (auto written = write(keys); !written) return std::unexpected(written.error());
    return keys;
}

std::expected<std::optional<seal::NamedKey>, std::string> KeyFile::keyNamed(std::string_view keyName) {
    std::vector<seal::NamedKey> keys = read();
    const auto there = std::ranges::find(keys, seal::keyName(keyName), &seal::NamedKey::name);
    if (there != keys.end()) return *there;
    if (keys.size() >= seal::maxKeys) return std::nullopt;
    keys.push_back(makeKey(keyName, keys));
    if (auto written = write(keys); !written) return std::unexpected(written.error());
    return keys.back();
}

std::expected<std::size_t, std::string> KeyFile::forget(std::string_view keyName) {
    std::vector<seal::NamedKey> keys = read();
    const auto forgotten =
        std::erase_if(keys, [&](const seal::NamedKey& each) { return each.name == seal::keyName(keyName); });
    if (auto written = write(keys); !written) return std::unexpected(written.error());
    return forgotten;
}

std::expected<std::size_t, std::string> KeyFile::forgetAll() {
    const std::size_t forgotten = read().size();
    if (auto written = write({}); !written) return std::unexpected(written.error());
    return forgotten;
}

std::expected<void, std::string> KeyFile::write(const std::vector<seal::NamedKey>& keys) {
    return replacePrivateFile(path, seal::textOf(keys));
}

// Its number is another one than the others', so that each of them is found at once.
seal::NamedKey KeyFile::makeKey(std::string_view keyName, const std::vector<seal::NamedKey>& others) {
    const auto numberOf = [&](const PairingKey& key) { return seal::numberOf(*seal::hashOf(secrets, key)); };
    for (;;) {
        std::array<std::uint8_t, 16> bits{};
        secrets.fillRandom(bits);
        const PairingKey key(bits);
        const bool isTaken = std::ranges::any_of(
            others, [&](const seal::NamedKey& other) { return numberOf(other.key) == numberOf(key); });
        if (!isTaken) return {.key = key, .name = seal::keyName(keyName)};
    }
}

KeyKeeper::KeyKeeper(Runtime& realRuntime, const std::string& stateFolder, Secrets& secrets,
                     std::weak_ptr<ReceiverModel> receiver, const Bilingual& bilingual)
    : runtime(realRuntime), text(bilingual), file(stateFolder + KeyFile::name, secrets),
      clientsPath(stateFolder + clientsFile), model(std::move(receiver)) {
    if (const auto keys = file.readOrMake(); !keys) report(keys.error());
    look();
    timer = runtime.repeatOnMain(interval, [this] { look(); });
}

KeysPage KeyKeeper::page() const {
    const auto there = model.lock();
    const std::vector<TimePoint> uses = there ? there->lastUsesOfKeys() : std::vector<TimePoint>();
    std::vector<KeyUse> keys;
    keys.reserve(told.size());
    for (std::size_t i = 0; i < told.size(); ++i)
        keys.push_back({told[i], i < uses.size() ? uses[i] : distantPast});
    return keysPage(keys, there ? there->pairedMode() : PairedMode{}, runtime.now(), text);
}

void KeyKeeper::forget(std::string_view keyName) {
    if (const auto forgotten = file.forget(keyName); !forgotten) report(forgotten.error());
    look();
}

void KeyKeeper::forgetAll() {
    if (const auto forgotten = file.forgetAll(); !forgotten) report(forgotten.error());
    look();
}

void KeyKeeper::letOnlyPairedIn(bool on) {
    if (const auto written = replacePrivateFile(clientsPath, on ? "paired\n" : "open\n"); !written)
        report(written.error());
    look();
}

void KeyKeeper::look() {
    const auto there = model.lock();
    if (!there) return;
    constexpr std::size_t longestWord = 64;
    there->letOnlyPairedIn(readSmallFile(clientsPath, longestWord).value_or("").starts_with("paired"));
    const std::vector<seal::NamedKey> keys = file.read();
    if (keys == told) return;
    told = keys;
    there->setKeys(withoutNames(keys));
}

void KeyKeeper::report(const std::string& error) {
    if (const auto there = model.lock()) there->appendLog(text("✗ Keys of clients: ", "✗ クライアントの鍵: ") + error);
}

} // namespace lumbrine
