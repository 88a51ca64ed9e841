// The system's JSON: objects to text and back.
#pragma once

#include "base/json_value.h"

#include <expected>
#include <string>
#include <string_view>

namespace lumbrine {

// What the system says is wrong, in the user's language.
struct JSONError {
    std::string text;

    bool operator==(const JSONError&) const = default;
};

// Stateless, so any thread may use it. Nothing is thrown, whatever comes in.
class JSON {
public:
    virtual ~JSON() = default;

    // Fails for text that is not UTF-8 and for numbers that are not finite.
    virtual std::expected<std::string, JSONError> serialise(const JSONValue::Object& object) = 0;

    // One whole document with nothing but white space around it. Of members with the same key the last one counts.
    // Fails for everything that is not JSON, and for documents that are nested more deeply than any command's are.
    virtual std::expected<JSONValue, JSONError> parse(std::string_view text) = 0;
};

} // namespace lumbrine
