#include "screen/pt_track_list.h"

#include "screen/element_access.h"
#include "screen/track_name_text.h"

namespace lumbrine {

namespace {

std::optional<std::string> rowText(ElementAccess& access, const ElementHandle& row) {
    const std::vector<ElementHandle> cells = access.children(row);
    if (cells.empty()) return std::nullopt;
    const std::vector<ElementHandle> contents = access.children(cells.front());
    if (contents.empty()) return std::nullopt;
    // A text has its content as value, a button as title.
    if (auto value = access.stringAttr(contents.front(), "AXValue")) return value;
    return access.stringAttr(contents.front(), "AXTitle");
}

} // namespace

std::optional<Snapshot> PTTrackList::read(Accessibility& accessibility) {
    if (!accessibility.isTrusted()) return std::nullopt;
    const std::optional<ElementHandle> app = proToolsApplication(accessibility);
    if (!app) return std::nullopt;
    const std::optional<ElementHandle> table = findTrackListTable(accessibility, *app);
    if (!table) return std::nullopt;

    ElementAccess access(accessibility);
    Snapshot snapshot;
    int position = 0;
    for (const ElementHandle& child : access.children(*table)) {
        const int i = position++;
        if (access.role(child) != "AXRow") continue;
        const std::optional<std::string> text = rowText(access, child);
        if (!text) continue;
        snapshot.names.push_back(stripPrefix(*text));
        if (access.boolAttr(child, "AXSelected") == true && !snapshot.selectedIndex) snapshot.selectedIndex = i;
    }
    if (snapshot.names.empty()) return std::nullopt;
    return snapshot;
}

std::optional<ElementHandle> PTTrackList::findTrackListTable(Accessibility& accessibility, const ElementHandle& app) {
    ElementAccess access(accessibility);
    for (const ElementHandle& window : access.windows(app))
        for (const ElementHandle& child : access.children(window))
            if (access.role(child) == "AXTable" && access.textAttr(child, "AXDescription") == "Track List")
                return child;
    return std::nullopt;
}

std::string PTTrackList::stripPrefix(std::string_view name) {
    constexpr std::size_t numberCharacters = 8;
    const std::size_t limit = offsetOfCharacter(name, numberCharacters);
    for (const std::string_view separator : {"。 ", ". "}) {
        const std::size_t found = name.find(separator);
        if (found < limit) return std::string(trimmedOfBlanks(name.substr(found + separator.size())));
    }
    return std::string(trimmedOfBlanks(name));
}

} // namespace lumbrine
