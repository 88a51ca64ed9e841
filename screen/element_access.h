// Reads another program's user interface, attribute by attribute. A failed read is an absent value.
#pragma once

#include "platform/api/accessibility.h"

#include <cstddef>

namespace lumbrine {

inline constexpr std::string_view proToolsBundleIdentifier = "com.avid.ProTools";

// The root element of the first running Pro Tools; absent when none runs.
std::optional<ElementHandle> proToolsApplication(Accessibility& accessibility);

// Matches an element that has this role and whose title contains one of `nameContainsAny` or equals one of `nameIs`.
// Bytes are compared, so case matters. When both lists are empty, nothing matches.
struct DescendantQuery {
    std::string_view role;
    std::vector<std::string_view> nameContainsAny{};
    std::vector<std::string_view> nameIs{};
    int maxDepth = 1; // the deepest level searched; the root's children are level 1 and are always searched
};

// Created for one piece of work on one thread and destroyed afterwards. Holds no handles.
class ElementAccess {
public:
    // The most elements that one object returns in all its lists together. The elements come from another program: they
    // may form a circle, or be too many. The list that would exceed the limit is empty, and so is every later one;
    // therefore every walk ends, and none sees half a list. Real windows stay below it: a Mix window with 1,000 tracks
    // and 100 elements in each strip has half as many.
    static constexpr std::size_t elementLimit = 200'000;

    explicit ElementAccess(Accessibility& screen) : screen(screen) {}

    // The elements of a list attribute. Empty when the read fails or the value is not a list of elements.
    std::vector<ElementHandle> elementList(const ElementHandle& element, std::string_view attribute);
    std::vector<ElementHandle> windows(const ElementHandle& application); // its "AXWindows"
    std::vector<ElementHandle> children(const ElementHandle& element);    // its "AXChildren"

    std::optional<std::string> stringAttr(const ElementHandle& element, std::string_view attribute);
    std::string textAttr(const ElementHandle& element, std::string_view attribute); // empty when it is not a text
    std::string role(const ElementHandle& element);                                 // its "AXRole", or empty
    std::string title(const ElementHandle& element);                                // its "AXTitle", or empty

    // Absent when the read fails or the value is not a boolean.
    std::optional<bool> boolAttr(const ElementHandle& element, std::string_view attribute);

    std::optional<ElementHandle> element(const ElementHandle& of, std::string_view attribute);

    // The first match in a breadth-first search below `of`; `of` itself is not checked. An element that can be reached
    // in two ways is checked twice.
    std::optional<ElementHandle> firstDescendant(const ElementHandle& of, const DescendantQuery& query);

    // Presses the element. The result is ignored on purpose: callers read the screen to see the effect.
    void press(const ElementHandle& element);

private:
    bool matches(const ElementHandle& element, const DescendantQuery& query);

    Accessibility& screen;
    std::size_t elementsLeft = elementLimit;
};

} // namespace lumbrine
