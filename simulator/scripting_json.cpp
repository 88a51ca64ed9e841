#include "simulator/scripting_json.h"

namespace lumbrine {

std::optional<JSON> objectOf(std::string_view body) {
    if (body.empty()) return JSON::object();
    constexpr bool throws = false;
    JSON json = JSON::parse(body, nullptr, throws);
    if (!json.is_object()) return std::nullopt;
    return json;
}

std::string textOf(const JSON& json) {
    constexpr int oneLine = -1;
    constexpr bool ascii = false;
    return json.dump(oneLine, ' ', ascii, JSON::error_handler_t::replace);
}

const JSON* valueOf(const JSON& object, std::string_view key) {
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
