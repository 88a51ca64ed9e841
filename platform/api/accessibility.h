// Reading and pressing what another program shows on the screen, by the operating system's Accessibility interface.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace lumbrine {

// A hold on one element of a foreign user interface. The element itself may be gone by now: then reads fail. The hold
// is released with its last copy, on whatever thread that is.
class AccessibleElement {
public:
    virtual ~AccessibleElement() = default;
};
using ElementHandle = std::shared_ptr<const AccessibleElement>; // never null

// What an attribute holds. Text is UTF-8.
using AttributeValue = std::variant<ElementHandle, std::vector<ElementHandle>, std::string, bool>;

// Stateless, so any thread may use it. Each call asks the other program and may wait for it, so never on the main
// thread but for the questions of trust. Handles are for the object that gave them.
class Accessibility {
public:
    virtual ~Accessibility() = default;

    // Whether the user lets this process see and press other programs' elements. The answer may change at any moment;
    // without trust every read and every action fails.
    virtual bool isTrusted() = 0;

    // The same, and if it is not so, the system shows the user where to allow it. Returns at once.
    virtual bool isTrustedOrPrompt() = 0;

    // The process identifier of the first running application with that bundle identifier.
    virtual std::optional<std::int32_t> runningApplication(std::string_view bundleIdentifier) = 0;

    // The root of the application's elements. Never fails; of a process that is not there every read fails.
    virtual ElementHandle applicationElement(std::int32_t processIdentifier) = 0;

    // Nothing when the read fails, when there is no value, and when the value is of another kind. A list is of elements
    // only: a list that holds anything else is a value of another kind. An empty list is a list.
    virtual std::optional<AttributeValue> attribute(const ElementHandle& element, std::string_view name) = 0;

    // Whether the other program took the action.
    virtual bool perform(const ElementHandle& element, std::string_view action) = 0;
};

} // namespace lumbrine
