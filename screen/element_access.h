// Reads another program's user interface, message by message, and never longer than that program bears it.
#pragma once

#include "platform/api/accessibility.h"
#include "platform/api/runtime.h"
#include "screen/no_reading.h"

#include <array>
#include <cstddef>

namespace lumbrine {

inline constexpr std::string_view proToolsBundleIdentifier = "com.avid.ProTools";

// The root element of the first running Pro Tools; absent when none runs.
std::optional<ElementHandle> proToolsApplication(Accessibility& accessibility);

// A value as what it should be. Absent when it is absent or of another kind; a list is then empty.
std::optional<std::string> asText(std::optional<AttributeValue> value);
std::optional<bool> asFlag(const std::optional<AttributeValue>& value);
std::optional<ElementHandle> asElement(std::optional<AttributeValue> value);
std::vector<ElementHandle> asList(std::optional<AttributeValue> value);

// Matches an element that has this role and whose title contains one of `nameContainsAny` or equals one of `nameIs`.
// Bytes are compared, so case matters. When both lists are empty, nothing matches.
struct DescendantQuery {
    std::string_view role;
    std::vector<std::string_view> nameContainsAny{};
    std::vector<std::string_view> nameIs{};
    int maxDepth = 1; // the deepest level searched; the root's children are level 1 and are always searched
};

// Created for one piece of work on one thread and destroyed afterwards. Holds no handles. Texts come in composed form
// (base/composed_text.h).
class ElementAccess {
public:
    // The most elements that one object returns in all its lists together. The elements come from another program: they
    // may form a circle, or be too many. The list that would exceed the limit is empty, and so is every later one;
    // therefore every walk ends, and none sees half a list. Real windows stay below it: a Mix window with 1,000 tracks
    // and 100 elements in each strip has half as many.
    static constexpr std::size_t elementLimit = 200'000;

    // The piece of work may take `timeLimit` from now.
    ElementAccess(Accessibility& screen, Runtime& runtime, Duration timeLimit)
        : screen(screen), runtime(runtime), deadline(runtime.now() + timeLimit) {}

    // Why the work is over before its end: two messages in a row went unanswered, one was refused, the user has
    // withdrawn the permission (nothingShown), or the time is up. From then on nothing is asked, and every value is
    // absent.
    std::optional<NoReading> ended() const { return end; }

    // How many messages brought nothing, because they failed or because the work was over.
    std::uint64_t unanswered() const { return unansweredCount; }

    // Several attributes of an element by one message.
    template <std::size_t count>
    std::array<std::optional<AttributeValue>, count> read(const ElementHandle& element,
                                                          const std::string_view (&names)[count]) {
        std::array<std::optional<AttributeValue>, count> values;
        ask(element, names, values);
        return values;
    }

    // Single attributes. A list is empty, a text absent or empty, where there is none.
    std::vector<ElementHandle> elementList(const ElementHandle& element, std::string_view attribute);
    std::vector<ElementHandle> windows(const ElementHandle& application); // its "AXWindows"
    std::vector<ElementHandle> children(const ElementHandle& element);    // its "AXChildren"
    std::string textAttr(const ElementHandle& element, std::string_view attribute);
    std::string title(const ElementHandle& element); // its "AXTitle"
    std::optional<ElementHandle> element(const ElementHandle& of, std::string_view attribute);

    // The first match in a breadth-first search below `of`; `of` itself is not checked. An element that can be reached
    // in two ways is checked twice.
    std::optional<ElementHandle> firstDescendant(const ElementHandle& of, const DescendantQuery& query);

    // Presses the element. The result is ignored on purpose: callers read the screen to see the effect.
    void press(const ElementHandle& element);

private:
    void ask(const ElementHandle& element, std::span<const std::string_view> names,
             std::span<std::optional<AttributeValue>> values);
    void noteFailure(ScreenFailure failure);
    void takeIn(std::optional<AttributeValue>& value);
    bool matches(const ElementHandle& element, const DescendantQuery& query);

    Accessibility& screen;
    Runtime& runtime;
    const TimePoint deadline;
    std::size_t elementsLeft = elementLimit;
    bool lastWasUnanswered = false;
    std::uint64_t unansweredCount = 0;
    std::optional<NoReading> end;
};

} // namespace lumbrine
