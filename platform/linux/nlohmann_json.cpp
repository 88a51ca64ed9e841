#include "platform/linux/nlohmann_json.h"

#include "platform/linux/nlohmann_reader.h"

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
class Builder final : public nlohmann::json_sax<Library> {
public:
    bool null() override { return put(nullptr); }
    bool boolean(bool flag) override { return put(flag); }
    bool number_integer(number_integer_t number) override { return put(std::int64_t{number}); }
    bool number_unsigned(number_unsigned_t number) override {
        if (number > static_cast<number_unsigned_t>(std::numeric_limits<std::int64_t>::max()))
            return put(static_cast<double>(number));
        return put(static_cast<std::int64_t>(number));
    }
    bool number_float(number_float_t number, const string_t&) override { return put(number); }
    bool string(string_t& characters) override { return put(characters); } // not moved: the parser reuses its memory
    bool binary(binary_t&) override { return false; }                      // not in JSON

    bool start_object(std::size_t) override {
        if (!enter<JSONValue::Object>()) return false;
        std::get<JSONValue::Object>(open.back()->content).reserve(usualSize[open.size() - 1]);
        return true;
    }
    bool key(string_t& name) override {
        memberName = name;
        return true;
    }
    bool end_object() override {
        const auto& closed = std::get<JSONValue::Object>(open.back()->content);
        usualSize[open.size() - 1] = static_cast<std::uint8_t>(std::min(closed.members().size(), largestUsualSize));
        return leave();
    }
    bool start_array(std::size_t) override { return enter<JSONValue::Array>(); }
    bool end_array() override { return leave(); }

    bool parse_error(std::size_t position, const std::string&, const nlohmann::detail::exception&) override {
        errorPosition = position;
        return false;
    }

    JSONValue document;
    std::size_t errorPosition = 0; // in bytes from 1; 0 when the document is too deep

private:
    template <typename Content>
    bool put(const Content& content) {
        place().content = content;
        return true;
    }

    // Where the next value belongs.
    JSONValue& place() {
        if (open.empty()) return document;
        if (auto* const array = std::get_if<JSONValue::Array>(&open.back()->content)) return array->emplace_back();
        return std::get<JSONValue::Object>(open.back()->content).add(std::move(memberName));
    }

    template <typename Container>
    bool enter() {
        if (open.size() == NlohmannJSON::deepest) return false;
        JSONValue& container = place();
        container.content.emplace<Container>();
        open.push_back(&container);
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
    if (readJSON(document, builder)) return std::move(builder.document);
    if (builder.errorPosition == 0)
        return std::unexpected(JSONError{text("JSON is nested too deeply", "JSON の入れ子が深すぎる")});
    const std::string position = std::to_string(builder.errorPosition);
    return std::unexpected(
        JSONError{text("not valid JSON at byte " + position, "JSON として読めない (" + position + " バイト目)")});
}

} // namespace lumbrine
