#include "app/pair_program.h"

#include "app/key_keeper.h"
#include "base/bilingual.h"
#include "platform/linux/linux_system_info.h"
#include "platform/linux/openssl_secrets.h"
#include "platform/linux/qr_lines.h"

#include <unistd.h>

#include <cstdio>
#include <string>

namespace lumbrine {

namespace {

struct Studio {
    LinuxSystemInfo system;
    Bilingual text{prefersJapanese(system.preferredLanguages())};
    OpenSSLSecrets secrets;
    std::optional<std::string> folder = system.stateFolder();

    KeyFile file() { return {*folder + KeyFile::name, secrets}; }
};

int fail(const std::string& why) {
    std::fprintf(stderr, "lumbrine-headless: %s\n", why.c_str());
    return 1;
}

int show(const seal::NamedKey& key) {
    const bool onTerminal = ::isatty(STDOUT_FILENO) == 1;
    for (const std::string& line :
         qrLines(key.key.text(), onTerminal ? QRColours::blackOnWhite : QRColours::lightBlocks))
        std::puts(line.c_str());
    std::printf("%s  %s\n", key.key.text().c_str(), key.name.c_str());
    return 0;
}

int tellForgotten(const std::expected<std::size_t, std::string>& forgotten, const Bilingual& text) {
    if (!forgotten) return fail(forgotten.error());
    if (*forgotten == 0) return fail(text("there is no such key", "その鍵はありません"));
    const std::string number = std::to_string(*forgotten);
    std::puts(text("Forgotten: " + number, "削除した鍵: " + number).c_str());
    return 0;
}

} // namespace

int pairAndPrint(std::string_view keyName) {
    Studio studio;
    if (!studio.folder) return fail(studio.text("HOME is not set", "HOME が設定されていません"));
    KeyFile file = studio.file();
    const auto all = file.readOrMake();
    if (!all) return fail(all.error());
    if (keyName.empty()) return show(all->front());
    const auto key = file.keyNamed(keyName);
    if (!key) return fail(key.error());
    if (!*key) return fail(studio.text("there are 16 keys already", "鍵は 16 個までです"));
    return show(**key);
}

int forgetAndPrint(std::string_view keyName) {
    Studio studio;
    if (!studio.folder) return fail(studio.text("HOME is not set", "HOME が設定されていません"));
    return tellForgotten(studio.file().forget(keyName), studio.text);
}

int forgetAllAndPrint() {
    Studio studio;
    if (!studio.folder) return fail(studio.text("HOME is not set", "HOME が設定されていません"));
    return tellForgotten(studio.file().forgetAll(), studio.text);
}

} // namespace lumbrine
