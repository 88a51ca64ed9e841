// A JSON document as values. Booleans, integers and other numbers are told apart.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace lumbrine {

struct JSONValue {
    using Array = std::vector<JSONValue>;
    using Object = std::map<std::string, JSONValue, std::less<>>;

    // An integer is a number without fraction or exponent that fits; every other number is a double.
    using Content = std::variant<std::nullptr_t, bool, std::int64_t, double, std::string, Array, Object>;

    JSONValue() = default;
    // NOLINTBEGIN(google-explicit-constructor): a document is written down as nested braces
    JSONValue(std::same_as<bool> auto flag) : content(flag) {}
    JSONValue(std::int64_t number) : content(number) {}
    JSONValue(int number) : content(std::int64_t{number}) {}
    JSONValue(double number) : content(number) {}
    JSONValue(std::string text) : content(std::move(text)) {}
    JSONValue(const char* text) : content(std::string(text)) {}
    JSONValue(Array elements) : content(std::move(elements)) {}
    JSONValue(Object members) : content(std::move(members)) {}
    // NOLINTEND(google-explicit-constructor)

    // What is in it, when it is of that kind; else null.
    template <typename Kind>
    const Kind* as() const {
        return std::get_if<Kind>(&content);
    }

    bool operator==(const JSONValue&) const = default;

    Content content;
};

// The member of that name; null when there is none.
inline const JSONValue* memberOf(const JSONValue::Object& object, std::string_view key) {
    const auto found = object.find(key);
    return found == object.end() ? nullptr : &found->second;
}

} // namespace lumbrine
