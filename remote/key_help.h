// The keys of each page in words: what `?` lists, and what docs/remote.md has in its tables.
#pragma once

#include "remote/view_state.h"

#include <span>
#include <string_view>

namespace lumbrine::remote {

struct KeyHelp {
    std::string_view keys;
    std::string_view meaning;
};

std::span<const KeyHelp> keysOf(Page page);

} // namespace lumbrine::remote
