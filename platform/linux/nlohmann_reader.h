// The JSON library's parser, for speed apart from what is done with its events.
#pragma once

#include <nlohmann/json.hpp>

#include <string_view>

namespace lumbrine {

// Tells `events` what the document holds, until it ends or one of them returns false. Whether it came to its end.
bool readJSON(std::string_view document, nlohmann::json_sax<nlohmann::json>& events);

} // namespace lumbrine
