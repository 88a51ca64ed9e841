// The JSON library's parser, in a file of its own that is compiled for speed; what it finds goes to somebody else.
#pragma once

#include <nlohmann/json.hpp>

#include <string_view>

namespace lumbrine {

// Tells `events` what the text holds. True when that was one whole JSON document and no event returned false.
bool readJSON(std::string_view document, nlohmann::json_sax<nlohmann::json>& events);

} // namespace lumbrine
