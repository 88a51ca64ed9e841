// JSON through NSJSONSerialization.
#pragma once

#include "base/bilingual.h"
#include "platform/api/json.h"

namespace lumbrine {

// The system accepts only an object or an array as a document. Its error texts are in the language that it uses for
// this process.
class FoundationJSON final : public JSON {
public:
    // The most levels of nesting in a document. Those of the scripting service have at most five.
    static constexpr int deepest = 100;

    explicit FoundationJSON(Bilingual text) : text(text) {}

    std::expected<std::string, JSONError> serialise(const JSONValue::Object& object) override;
    std::expected<JSONValue, JSONError> parse(std::string_view document) override;

private:
    const Bilingual text;
};

} // namespace lumbrine
