// The "Track List" table of Pro Tools' Edit window: the full names of all tracks, and which one is selected.
#pragma once

#include "platform/api/accessibility.h"

namespace lumbrine {

struct Snapshot {
    std::vector<std::string> names; // of the rows with a readable name, in the order of display; never empty

    // The place of the first selected of these rows among all of the table's children. That is its place in `names`
    // only when every child is a row with a readable name; so compare it only when as many names are known as tracks.
    std::optional<int> selectedIndex;
};

// Stateless: any thread but the main thread, several at once. Each read asks Pro Tools five times a row or six, so
// the caller decides when one is worth it.
struct PTTrackList {
    // Nothing without the user's permission (which is not asked for), without Pro Tools, without the table and without
    // a single name. A row of which something cannot be read is left out.
    static std::optional<Snapshot> read(Accessibility& accessibility);

    // Among the direct children of the application's windows, the first table that is described as "Track List".
    static std::optional<ElementHandle> findTrackListTable(Accessibility& accessibility, const ElementHandle& app);

    // Without the number that Pro Tools may show before a name ("12. Vocals", "1。 ドラム"), and without blanks at both
    // ends. What counts as a number is whatever precedes a full stop and a space, when the full stop is among the first
    // 8 characters; the ideographic full stop is looked for first. A character is a code point. Blanks are tabs and all
    // of Unicode's spaces, not the ends of lines. Any bytes may come in.
    static std::string stripPrefix(std::string_view name);
};

} // namespace lumbrine
