// JSON by the nlohmann library.
#pragma once

#include "base/bilingual.h"
#include "platform/api/json.h"

namespace lumbrine {

class NlohmannJSON final : public JSON {
public:
    // A document may be nested this deeply; the deepest of the scripting service's has five levels.
    static constexpr int deepest = 100;

    explicit NlohmannJSON(Bilingual bilingual) : text(bilingual) {}

    std::expected<std::string, JSONError> serialise(const JSONValue::Object& object) override;
    std::expected<JSONValue, JSONError> parse(std::string_view document) override;

private:
    const Bilingual text;
};

} // namespace lumbrine
