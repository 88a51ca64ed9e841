#include "seal/key_list.h"

#include "base/utf8.h"

#include <algorithm>
#include <optional>
#include <sstream>

namespace lumbrine::seal {

std::vector<NamedKey> keysIn(const std::string& text) {
    std::vector<NamedKey> keys;
    std::istringstream lines(text);
    for (std::string line; keys.size() < maxKeys && std::getline(lines, line);) {
        const std::string letters = line.substr(0, line.find(' '));
        const auto key = PairingKey::parse(letters);
        if (key) keys.push_back({.key = *key, .name = keyName(line.substr(std::min(letters.size() + 1, line.size())))});
    }
    return keys;
}

std::string textOf(const std::vector<NamedKey>& keys) {
    std::string text;
    for (const NamedKey& each : keys)
        text += each.key.text() + " " + each.name + "\n";
    return text;
}

std::string keyName(std::string_view text) {
    std::string name(utf8Clamp(text, maxNameBytes));
    std::ranges::replace_if(name, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
    return name;
}

} // namespace lumbrine::seal
