#include "platform/portable/nlohmann_json.h"

#include "platform/portable/nlohmann_reader.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace lumbrine {

namespace {

using Library = nlohmann::json;

// False for a number that JSON cannot express: infinity or NaN.
bool convert(const JSONValue& value, Library& converted);

bool convert(const JSONValue::Array& elements, Library& converted) {
    converted = Library::array();
    return std::ranges::all_of(elements,
                               [&](const JSONValue& element) { return convert(element, converted.emplace_back()); });
}

bool convert(const JSONValue::Object& object, Library& converted) {
    converted = Library::object();
    return std::ranges::all_of(object.members(),
                               [&](const JSONMember& member) { return convert(member.value, converted[member.name]); });
}

bool convert(const JSONValue& value, Library& converted) {
    return std::visit(
        [&](const auto& content) {
            using Content = std::decay_t<decltype(content)>;
            if constexpr (std::is_same_v<Content, JSONValue::Array> || std::is_same_v<Content, JSONValue::Object>) {
                return convert(content, converted);
            } else {
                if constexpr (std::is_same_v<Content, double>)
                    if (!std::isfinite(content)) return false;
                converted = content;
                return true;
            }
        },
        value.content);
}

} // namespace

std::expected<std::string, JSONError> NlohmannJSON::serialise(const JSONValue::Object& object) {
    Library converted;
    if (!convert(object, converted))
        return std::unexpected(
            JSONError{text("a number that is not finite cannot be written as JSON", "有限でない数は JSON に書けない")});
    try {
        return converted.dump();
    } catch (const Library::type_error&) {
        return std::unexpected(
            JSONError{text("text that is not UTF-8 cannot be written as JSON", "UTF-8 でない文字は JSON に書けない")});
    }
}

std::expected<JSONValue, JSONError> NlohmannJSON::parse(std::string_view document) {
    auto value = readJSON(document, {.levels = deepest, .values = mostValues});
    if (value) return *std::move(value);
    switch (value.error().kind) {
    case JSONReadError::Kind::tooDeep:
        return std::unexpected(JSONError{text("JSON is nested too deeply", "JSON の入れ子が深すぎる")});
    case JSONReadError::Kind::tooManyValues:
        return std::unexpected(JSONError{text("JSON has too many values", "JSON の値が多すぎる")});
    case JSONReadError::Kind::notJSON:
        break;
    }
    const std::string position = std::to_string(value.error().position);
    return std::unexpected(
        JSONError{text("not valid JSON at byte " + position, "JSON として読めない (" + position + " バイト目)")});
}

} // namespace lumbrine
