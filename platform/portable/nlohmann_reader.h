// Reads JSON with the nlohmann library's parser.
#pragma once

#include "base/json_value.h"

#include <cstddef>
#include <expected>
#include <string_view>

namespace lumbrine {

struct JSONLimits {
    std::size_t levels; // of nesting
    std::size_t values; // in the whole document, containers included
};

struct JSONReadError {
    enum class Kind { notJSON, tooDeep, tooManyValues };

    Kind kind;
    std::size_t position = 0; // for notJSON: the byte, from 1
};

// Stops at the first thing that is wrong, so a document beyond the limits takes no more memory than one within them.
std::expected<JSONValue, JSONReadError> readJSON(std::string_view document, const JSONLimits& limits);

} // namespace lumbrine
