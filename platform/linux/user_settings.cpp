#include "platform/linux/user_settings.h"

namespace lumbrine {

namespace {

std::vector<std::string> splitAtColons(std::string_view list) {
    std::vector<std::string> parts;
    while (!list.empty()) {
        const std::size_t colon = list.find(':');
        if (colon != 0) parts.emplace_back(list.substr(0, colon));
        list.remove_prefix(colon == std::string_view::npos ? list.size() : colon + 1);
    }
    return parts;
}

// The characters that a backslash escapes inside double quotes. Before any other, the backslash is literal.
bool isProtectable(char c) {
    return c == '"' || c == '\\' || c == '$' || c == '`';
}

// The value of an assignment up to the first unquoted blank. Parts in single, double and no quotes may follow each
// other.
std::optional<std::string> unquote(std::string_view text) {
    std::string value;
    char quote = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const bool last = i + 1 == text.size();
        if (c == quote && quote != 0) {
            quote = 0;
        } else if (quote == 0 && (c == '"' || c == '\'')) {
            quote = c;
        } else if (quote == 0 && (c == ' ' || c == '\t' || c == '\r')) {
            return value;
        } else if (c == '\\' && !last && (quote == 0 || (quote == '"' && isProtectable(text[i + 1])))) {
            value += text[++i];
        } else {
            value += c;
        }
    }
    if (quote != 0) return std::nullopt;
    return value;
}

} // namespace

std::vector<std::string> languagesOf(const EnvironmentLookup& environment) {
    if (const auto list = environment("LANGUAGE")) {
        std::vector<std::string> languages = splitAtColons(*list);
        if (!languages.empty()) return languages;
    }
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const auto locale = environment(name);
        if (locale && !locale->empty()) return {*locale};
    }
    return {};
}

std::optional<std::string> prettyHostName(std::string_view machineInfo) {
    constexpr std::string_view key = "PRETTY_HOSTNAME=";
    std::optional<std::string> found;
    while (!machineInfo.empty()) {
        const std::size_t end = machineInfo.find('\n');
        const std::string_view line = machineInfo.substr(0, end);
        if (line.starts_with(key)) found = unquote(line.substr(key.size()));
        machineInfo.remove_prefix(end == std::string_view::npos ? machineInfo.size() : end + 1);
    }
    if (found && found->empty()) return std::nullopt;
    return found;
}

std::optional<std::string> stateFolderIn(const EnvironmentLookup& environment) {
    const auto folder = [&](const char* name) {
        const auto value = environment(name);
        return value && value->starts_with('/') ? value : std::nullopt; // a relative path is to be ignored
    };
    if (const auto own = folder("STATE_DIRECTORY")) return own->substr(0, own->find(':'));
    if (const auto state = folder("XDG_STATE_HOME")) return *state + "/lumbrine";
    if (const auto home = folder("HOME")) return *home + "/.local/state/lumbrine";
    return std::nullopt;
}

} // namespace lumbrine
