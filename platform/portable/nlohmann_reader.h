// Reads JSON with the nlohmann library's parser.
#pragma once

#include "base/json_value.h"

#include <cstddef>
#include <expected>
#include <string_view>

namespace lumbrine {

// Else the byte, from 1, at which the text is no JSON document; 0 when it is nested more deeply than `deepest` levels.
std::expected<JSONValue, std::size_t> readJSON(std::string_view document, std::size_t deepest);

} // namespace lumbrine
