// JSON by the system's own reader and writer.
#pragma once

#include "base/bilingual.h"
#include "platform/api/json.h"

namespace lumbrine {

// A document is an object or an array; anything else at its top is not JSON to the system. What is wrong with a
// document is said by the system, in the language it has for this process.
class FoundationJSON final : public JSON {
public:
    // A document may be nested this deeply; the deepest of the scripting service's has five levels.
    static constexpr int deepest = 100;

    explicit FoundationJSON(Bilingual bilingual) : text(bilingual) {}

    std::expected<std::string, JSONError> serialise(const JSONValue::Object& object) override;
    std::expected<JSONValue, JSONError> parse(std::string_view document) override;

private:
    const Bilingual text;
};

} // namespace lumbrine
