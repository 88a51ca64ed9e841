#include "screen/element_access.h"

#include <algorithm>
#include <deque>
#include <utility>

namespace lumbrine {

std::optional<ElementHandle> proToolsApplication(Accessibility& accessibility) {
    const std::optional<std::int32_t> process = accessibility.runningApplication(proToolsBundleIdentifier);
    if (!process) return std::nullopt;
    return accessibility.applicationElement(*process);
}

namespace {

template <typename Kind>
std::optional<Kind> readAs(Accessibility& screen, const ElementHandle& element, std::string_view attribute) {
    std::optional<AttributeValue> value = screen.attribute(element, attribute);
    if (!value || !std::holds_alternative<Kind>(*value)) return std::nullopt;
    return std::get<Kind>(std::move(*value));
}

} // namespace

std::vector<ElementHandle> ElementAccess::elementList(const ElementHandle& element, std::string_view attribute) {
    if (elementsLeft == 0) return {};
    auto list = readAs<std::vector<ElementHandle>>(screen, element, attribute);
    if (!list) return {};
    if (list->size() > elementsLeft) {
        elementsLeft = 0; // every later list is empty too
        return {};
    }
    elementsLeft -= list->size();
    return std::move(*list);
}

std::vector<ElementHandle> ElementAccess::windows(const ElementHandle& application) {
    return elementList(application, "AXWindows");
}

std::vector<ElementHandle> ElementAccess::children(const ElementHandle& element) {
    return elementList(element, "AXChildren");
}

std::optional<std::string> ElementAccess::stringAttr(const ElementHandle& element, std::string_view attribute) {
    return readAs<std::string>(screen, element, attribute);
}

std::string ElementAccess::textAttr(const ElementHandle& element, std::string_view attribute) {
    return stringAttr(element, attribute).value_or(std::string());
}

std::string ElementAccess::role(const ElementHandle& element) {
    return textAttr(element, "AXRole");
}

std::string ElementAccess::title(const ElementHandle& element) {
    return textAttr(element, "AXTitle");
}

std::optional<bool> ElementAccess::boolAttr(const ElementHandle& element, std::string_view attribute) {
    return readAs<bool>(screen, element, attribute);
}

std::optional<ElementHandle> ElementAccess::element(const ElementHandle& of, std::string_view attribute) {
    return readAs<ElementHandle>(screen, of, attribute);
}

bool ElementAccess::matches(const ElementHandle& element, const DescendantQuery& query) {
    if (role(element) != query.role) return false;
    const std::string name = title(element);
    const auto isContained = [&](std::string_view part) { return name.find(part) != std::string::npos; };
    return std::ranges::any_of(query.nameContainsAny, isContained) ||
           std::ranges::find(query.nameIs, name) != query.nameIs.end();
}

std::optional<ElementHandle> ElementAccess::firstDescendant(const ElementHandle& of, const DescendantQuery& query) {
    struct Entry {
        ElementHandle element;
        int depth;
    };
    std::deque<Entry> ahead;
    const auto append = [&](const ElementHandle& parent, int depth) {
        for (ElementHandle& child : children(parent))
            ahead.push_back({std::move(child), depth});
    };
    for (append(of, 1); !ahead.empty(); ahead.pop_front()) {
        const Entry& entry = ahead.front();
        if (matches(entry.element, query)) return entry.element;
        if (entry.depth < query.maxDepth) append(entry.element, entry.depth + 1);
    }
    return std::nullopt;
}

void ElementAccess::press(const ElementHandle& element) {
    screen.perform(element, "AXPress");
}

} // namespace lumbrine
