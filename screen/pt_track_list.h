// Reads the "Track List" table of Pro Tools' Edit window: the full names of all tracks, and which track is selected.
#pragma once

#include "platform/api/accessibility.h"
#include "platform/api/runtime.h"
#include "screen/no_reading.h"

#include <expected>

namespace lumbrine {

struct Snapshot {
    std::vector<std::string> names; // of the rows with a readable name, in display order; never empty

    // The position of the first selected one of these rows among all children of the table. It is a position in `names`
    // only if every child is a row with a readable name, so use it only when `names` has as many entries as tracks. The
    // receiver does not use it yet.
    std::optional<int> selectedIndex;
};

// Stateless: any thread except the main thread, also several at once. A read asks Pro Tools three times for each row,
// so do not repeat it without need.
struct PTTrackList {
    // How long a read may take. Then it has brought nothing: the list would be too short.
    static constexpr Duration timeLimit = seconds(10);

    // Nothing is shown without the user's permission (the user is not asked), without Pro Tools, without a table with
    // the description "Track List" in one of its windows, and when no name can be read. A row whose name cannot be read
    // is left out. Names are in composed form (base/composed_text.h).
    static std::expected<Snapshot, NoReading> read(Accessibility& accessibility, Runtime& runtime);

    // Removes the number that Pro Tools may show before a name ("12. Vocals", "1。 ドラム") and the blanks at both ends.
    // Everything before the first full stop and space counts as the number, if the full stop is among the first 8 code
    // points; the ideographic full stop is tried first. Blanks are tabs and all Unicode spaces, but not line ends.
    // Accepts any bytes.
    static std::string stripPrefix(std::string_view name);
};

} // namespace lumbrine
