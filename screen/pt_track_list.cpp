#include "screen/pt_track_list.h"

#include "screen/element_access.h"
#include "screen/track_name_text.h"

#include <utility>

namespace lumbrine {

namespace {

std::optional<std::string> rowText(ElementAccess& access, const std::vector<ElementHandle>& cells) {
    if (cells.empty()) return std::nullopt;
    const std::vector<ElementHandle> contents = access.children(cells.front());
    if (contents.empty()) return std::nullopt;
    // A text has its content as value, a button as title.
    auto [value, title] = access.read(contents.front(), {"AXValue", "AXTitle"});
    if (auto text = asText(std::move(value))) return text;
    return asText(std::move(title));
}

// The first table with the description "Track List" among the direct children of the application's windows.
std::optional<ElementHandle> findTable(ElementAccess& access, const ElementHandle& app) {
    for (const ElementHandle& window : access.windows(app))
        for (const ElementHandle& child : access.children(window)) {
            auto [role, description] = access.read(child, {"AXRole", "AXDescription"});
            if (asText(std::move(role)) == "AXTable" && asText(std::move(description)) == "Track List") return child;
        }
    return std::nullopt;
}

Snapshot rowsOf(ElementAccess& access, const ElementHandle& table) {
    Snapshot snapshot;
    int position = 0;
    for (const ElementHandle& child : access.children(table)) {
        const int i = position++;
        auto [role, selected, cells] = access.read(child, {"AXRole", "AXSelected", "AXChildren"});
        if (asText(std::move(role)) != "AXRow") continue;
        const std::optional<std::string> text = rowText(access, asList(std::move(cells)));
        if (!text) continue;
        snapshot.names.push_back(PTTrackList::stripPrefix(*text));
        if (asFlag(selected) == true && !snapshot.selectedIndex) snapshot.selectedIndex = i;
    }
    return snapshot;
}

} // namespace

std::expected<Snapshot, NoReading> PTTrackList::read(Accessibility& accessibility, Runtime& runtime) {
    if (!accessibility.isTrusted()) return std::unexpected(NoReading::nothingShown);
    const std::optional<ElementHandle> app = proToolsApplication(accessibility);
    if (!app) return std::unexpected(NoReading::nothingShown);
    ElementAccess access(accessibility, runtime, timeLimit);
    Snapshot snapshot;
    if (const std::optional<ElementHandle> table = findTable(access, *app)) snapshot = rowsOf(access, *table);
    if (snapshot.names.empty() || access.ended())
        return std::unexpected(access.ended().value_or(NoReading::nothingShown));
    return snapshot;
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
