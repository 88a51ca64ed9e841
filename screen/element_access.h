// Reading a foreign user interface, attribute by attribute: every failed read is a value that is not there.
#pragma once

#include "platform/api/accessibility.h"

#include <cstddef>

namespace lumbrine {

inline constexpr std::string_view proToolsBundleIdentifier = "com.avid.ProTools";

// The root of the first running Pro Tools' elements.
std::optional<ElementHandle> proToolsApplication(Accessibility& accessibility);

// An element that has this role, and a title that contains one of `nameContainsAny` or is one of `nameIs`. Plain bytes
// are compared, upper and lower case apart. With both lists empty nothing matches.
struct DescendantQuery {
    std::string_view role;
    std::vector<std::string_view> nameContainsAny{};
    std::vector<std::string_view> nameIs{};
    int maxDepth = 1; // how deep to look; the root's own children, at depth 1, are always looked at
};

// Made for one piece of work on one thread, and gone when it is done. Holds no handles.
class ElementAccess {
public:
    // The elements come from another program: a list may lead back to where it was found, or be immense. So the lists
    // of one object hold no more elements than this together; the list that would go beyond it is empty, and so is
    // every later one. Whatever walks from list to list comes to an end, and never sees half of a list. No real window
    // comes near: the Mix window of 1,000 tracks with 100 elements in each strip has half as many.
    static constexpr std::size_t elementLimit = 200'000;

    explicit ElementAccess(Accessibility& accessibility) : screen(accessibility) {}

    // Empty when there is nothing, or something else than a list of elements.
    std::vector<ElementHandle> elementList(const ElementHandle& element, std::string_view attribute);
    std::vector<ElementHandle> windows(const ElementHandle& application); // its "AXWindows"
    std::vector<ElementHandle> children(const ElementHandle& element);    // its "AXChildren"

    std::optional<std::string> stringAttr(const ElementHandle& element, std::string_view attribute);
    std::string textAttr(const ElementHandle& element, std::string_view attribute); // empty when it is no text
    std::string role(const ElementHandle& element);                                 // its "AXRole", or empty
    std::string title(const ElementHandle& element);                                // its "AXTitle", or empty

    // Nothing when it is not known whether it is so.
    std::optional<bool> boolAttr(const ElementHandle& element, std::string_view attribute);

    std::optional<ElementHandle> element(const ElementHandle& of, std::string_view attribute);

    // The first match breadth first: a level is looked through in order before the next. `of` itself is not looked at.
    // An element that can be reached in two ways is looked at twice.
    std::optional<ElementHandle> firstDescendant(const ElementHandle& of, const DescendantQuery& query);

    // Whether the program took it is its own affair: what comes of it is seen on the screen.
    void press(const ElementHandle& element);

private:
    bool matches(const ElementHandle& element, const DescendantQuery& query);

    Accessibility& screen;
    std::size_t elementsLeft = elementLimit;
};

} // namespace lumbrine
