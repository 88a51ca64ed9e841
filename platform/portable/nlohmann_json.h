// JSON with the nlohmann library.
#pragma once

#include "base/bilingual.h"
#include "platform/api/json.h"

#include <cstddef>

namespace lumbrine {

class NlohmannJSON final : public JSON {
public:
    // The most levels of nesting in a document. Those of the scripting service have at most five.
    static constexpr int deepest = 100;

    // The most values in a document, containers included: a hundred for each of a thousand tracks.
    static constexpr std::size_t mostValues = 100'000;

    explicit NlohmannJSON(Bilingual text) : text(text) {}

    std::expected<std::string, JSONError> serialise(const JSONValue::Object& object) override;
    std::expected<JSONValue, JSONError> parse(std::string_view document) override;

private:
    const Bilingual text;
};

} // namespace lumbrine
