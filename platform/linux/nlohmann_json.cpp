#include "platform/linux/nlohmann_json.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <type_traits>
#include <vector>

namespace lumbrine {

namespace {

using Library = nlohmann::json;

// Builds the document from the parser's events, so that nothing is thrown and no depth is followed unasked.
class Builder {
public:
    using number_integer_t = Library::number_integer_t;
    using number_unsigned_t = Library::number_unsigned_t;
    using number_float_t = Library::number_float_t;
    using string_t = Library::string_t;
    using binary_t = Library::binary_t;

    bool null() { return add(JSONValue()); }
    bool boolean(bool flag) { return add(flag); }
    bool number_integer(number_integer_t number) { return add(std::int64_t{number}); }
    bool number_unsigned(number_unsigned_t number) {
        if (number > static_cast<number_unsigned_t>(std::numeric_limits<std::int64_t>::max()))
            return add(static_cast<double>(number));
        return add(static_cast<std::int64_t>(number));
    }
    bool number_float(number_float_t number, const string_t&) { return add(number); }
    bool string(string_t& characters) { return add(characters); } // not moved: the parser goes on with its memory
    bool binary(binary_t&) { return false; }                      // not in JSON

    bool start_object(std::size_t) {
        if (!enter(JSONValue::Object())) return false;
        std::get<JSONValue::Object>(open.back()->content).reserve(usualSize[open.size() - 1]);
        return true;
    }
    bool key(string_t& name) {
        memberName = name;
        return true;
    }
    bool end_object() {
        const auto& closed = std::get<JSONValue::Object>(open.back()->content);
        usualSize[open.size() - 1] = static_cast<std::uint8_t>(std::min(closed.members().size(), largestUsualSize));
        return leave();
    }
    bool start_array(std::size_t) { return enter(JSONValue::Array()); }
    bool end_array() { return leave(); }

    bool parse_error(std::size_t position, const std::string&, const nlohmann::detail::exception&) {
        errorPosition = position;
        return false;
    }

    JSONValue document;
    std::size_t errorPosition = 0; // in bytes from 1; 0 when the document is too deep

private:
    bool add(JSONValue value) {
        place(std::move(value));
        return true;
    }

    JSONValue& place(JSONValue value) {
        if (open.empty()) return document = std::move(value);
        if (auto* const array = std::get_if<JSONValue::Array>(&open.back()->content))
            return array->emplace_back(std::move(value));
        return std::get<JSONValue::Object>(open.back()->content).add(std::move(memberName), std::move(value));
    }

    bool enter(JSONValue container) {
        if (open.size() == NlohmannJSON::deepest) return false;
        open.push_back(&place(std::move(container)));
        return true;
    }

    bool leave() {
        open.pop_back();
        return true;
    }

    static constexpr std::size_t largestUsualSize = 32;

    std::vector<JSONValue*> open;                                // none of them grows while one that it holds is open
    std::array<std::uint8_t, NlohmannJSON::deepest> usualSize{}; // of the object before at each depth
    std::string memberName;
};

// False for a number that JSON cannot write.
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
    Builder builder;
    if (Library::sax_parse(document.begin(), document.end(), &builder)) return std::move(builder.document);
    if (builder.errorPosition == 0)
        return std::unexpected(JSONError{text("JSON is nested too deeply", "JSON の入れ子が深すぎる")});
    const std::string position = std::to_string(builder.errorPosition);
    return std::unexpected(
        JSONError{text("not valid JSON at byte " + position, "JSON として読めない (" + position + " バイト目)")});
}

} // namespace lumbrine
