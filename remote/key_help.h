// The description of the keys of each page, for the list on `?` and for the tables in docs/remote.md.
#pragma once

#include "remote/view_state.h"

#include <span>
#include <string_view>

namespace lumbrine::remote {

struct KeyHelp {
    std::string_view keys;
    std::string_view meaning;
    std::string_view japanese; // the same
};

std::span<const KeyHelp> keysOf(Page page);

} // namespace lumbrine::remote
