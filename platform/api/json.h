// Converts JSON objects to text and JSON text to values.
#pragma once

#include "base/json_value.h"

#include <expected>
#include <string>
#include <string_view>

namespace lumbrine {

// What is wrong with the object or the text, in the user's language.
struct JSONError {
    std::string text;

    bool operator==(const JSONError&) const = default;
};

// Stateless: any thread may use it. Throws nothing, whatever the input.
class JSON {
public:
    virtual ~JSON() = default;

    // Fails when a text is not UTF-8 or a number is not finite.
    virtual std::expected<std::string, JSONError> serialise(const JSONValue::Object& object) = 0;

    // Parses one whole document with at most white space around it. When members share a key, the last one counts.
    // Fails when the text is not JSON, and when it is larger than the back end allows: at least 100 levels of nesting
    // and 100,000 values.
    virtual std::expected<JSONValue, JSONError> parse(std::string_view text) = 0;
};

} // namespace lumbrine
