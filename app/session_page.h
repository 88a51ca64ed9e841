// All tracks of the session as a list in which one is looked for and gone to. Plain values, for every shell.
#pragma once

#include "base/bilingual.h"
#include "model/state/published_state.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

struct SessionRow {
    std::size_t track;  // index in the session
    std::string number; // "17"
    std::string strip;  // that shows the track: "3"; empty when none does
    std::string name;   // in full, if that is known
    std::optional<RGBColor> color;
    std::string fader;   // "72 %"; empty while it is unknown
    std::string lights;  // "M S R I": those that are on
    std::string comment; // from the Mix window

    bool operator==(const SessionRow&) const = default;
};

struct SessionPage {
    std::string title;
    std::string searchHint;
    std::vector<std::string> headings; // number, strip, name, fader, lights, comment
    std::vector<SessionRow> rows;
    std::string note; // below the list: how many are shown, or why there are none

    bool operator==(const SessionPage&) const = default;
};

// The tracks whose number is `search`, or whose name or comment contains it; all when it is empty. Letters of ASCII
// match in either case.
SessionPage sessionPage(const PublishedState& published, std::string_view search, const Bilingual& text);

} // namespace lumbrine
