// A JSON document as values. Booleans, integers and other numbers are different kinds.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace lumbrine {

struct JSONMember;
struct JSONValue;

// Members in document order. When a name occurs more than once, the last member counts.
class JSONObject {
public:
    JSONObject();
    JSONObject(std::initializer_list<JSONMember> initial);
    JSONObject(const JSONObject&);
    JSONObject(JSONObject&&) noexcept;
    JSONObject& operator=(const JSONObject&);
    JSONObject& operator=(JSONObject&&) noexcept;
    ~JSONObject();

    // Adds a member with the value null and returns that value. The reference is valid until the next `add`.
    JSONValue& add(std::string_view name);

    // Null when there is no member of this name. A linear search: objects are small.
    const JSONValue* find(std::string_view name) const;

    const std::vector<JSONMember>& members() const { return all; }
    void reserve(std::size_t count);

    // The order of the members does not matter.
    bool operator==(const JSONObject& other) const;

private:
    std::vector<JSONMember> all;
};

struct JSONValue {
    using Array = std::vector<JSONValue>;
    using Object = JSONObject;

    // A number without fraction and exponent that fits 64 bits is an integer. Every other number is a double.
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

    // The content if it is of this kind, else null. Valid as long as this value is unchanged.
    template <typename Kind>
    const Kind* as() const {
        return std::get_if<Kind>(&content);
    }

    bool operator==(const JSONValue&) const = default;

    Content content;
};

struct JSONMember {
    std::string name;
    JSONValue value;
};

inline JSONValue& JSONObject::add(std::string_view name) {
    JSONMember& added = all.emplace_back();
    added.name = name;
    return added.value;
}

} // namespace lumbrine
