#include "simulator/scripting_json.h"

namespace lumbrine {

std::optional<ScriptingJSON> objectOf(std::string_view body) {
    if (body.empty()) return ScriptingJSON::object();
    constexpr bool throws = false;
    ScriptingJSON json = ScriptingJSON::parse(body, nullptr, throws);
    if (!json.is_object()) return std::nullopt;
    return json;
}

std::string textOf(const ScriptingJSON& json) {
    constexpr int oneLine = -1;
    constexpr bool ascii = false;
    return json.dump(oneLine, ' ', ascii, ScriptingJSON::error_handler_t::replace);
}

const ScriptingJSON* valueOf(const ScriptingJSON& object, std::string_view key) {
    const auto found = object.find(std::string(key));
    return found == object.end() ? nullptr : &*found;
}

std::string spelledKey(std::string_view snakeCase, bool camelCase) {
    if (!camelCase) return std::string(snakeCase);
    std::string key;
    bool upper = false;
    for (const char character : snakeCase) {
        if (character == '_') {
            upper = true;
            continue;
        }
        key += upper ? static_cast<char>(character - 'a' + 'A') : character;
        upper = false;
    }
    return key;
}

} // namespace lumbrine
