// Reads the "Track List" table of Pro Tools' Edit window: the full names of all tracks, and which track is selected.
#pragma once

#include "platform/api/accessibility.h"

namespace lumbrine {

struct Snapshot {
    std::vector<std::string> names; // of the rows with a readable name, in display order; never empty

    // The position of the first selected one of these rows among all children of the table. It is a position in `names`
    // only if every child is a row with a readable name, so use it only when `names` has as many entries as tracks. The
    // receiver does not use it yet.
    std::optional<int> selectedIndex;
};

// Stateless: any thread except the main thread, also several at once. A read asks Pro Tools five or six times for each
// row, so do not repeat it without need.
struct PTTrackList {
    // Absent without the user's permission (the user is not asked), without Pro Tools, without the table, and when no
    // name can be read. A row whose name cannot be read is left out.
    static std::optional<Snapshot> read(Accessibility& accessibility);

    // The first table with the description "Track List" among the direct children of the application's windows.
    static std::optional<ElementHandle> findTrackListTable(Accessibility& accessibility, const ElementHandle& app);

    // Removes the number that Pro Tools may show before a name ("12. Vocals", "1。 ドラム") and the blanks at both ends.
    // Everything before the first full stop and space counts as the number, if the full stop is among the first 8 code
    // points; the ideographic full stop is tried first. Blanks are tabs and all Unicode spaces, but not line ends.
    // Accepts any bytes.
    static std::string stripPrefix(std::string_view name);
};

} // namespace lumbrine
