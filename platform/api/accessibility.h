// Reads and presses the user interface of another program through the operating system's accessibility interface.
#pragma once

#include "platform/api/time.h"

#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace lumbrine {

// A reference to one element of another program's user interface. When that program has removed the element, reads of
// it fail. The reference is released with the last copy of its handle, on the thread that drops that copy.
class AccessibleElement {
public:
    virtual ~AccessibleElement() = default;
};
using ElementHandle = std::shared_ptr<const AccessibleElement>; // never null

// The value of an attribute. Text is UTF-8.
using AttributeValue = std::variant<ElementHandle, std::vector<ElementHandle>, std::string, bool>;

// Why a message to the other program brought nothing at all.
enum class ScreenFailure {
    noAnswer, // none within Accessibility::answerTime: the program is busy or hangs
    refused,  // the system does not let this process read, whatever it says when it is asked for trust
};

// Stateless: any thread may use it. Only isTrusted and isTrustedOrPrompt belong on the main thread; every other call
// may wait for the other program. A handle may only be passed to the object that returned it.
class Accessibility {
public:
    // The longest that a message to the other program waits for its answer.
    static constexpr Duration answerTime = seconds(1);

    virtual ~Accessibility() = default;

    // True when the user allows this process to read and press the elements of other programs. The user may change this
    // at any time. Without trust, every read and every action fails.
    virtual bool isTrusted() = 0;

    // Like isTrusted. When the answer is false, the system also shows the user where to allow it. Returns at once.
    virtual bool isTrustedOrPrompt() = 0;

    // The process identifier of the first running application with this bundle identifier; absent when none runs.
    virtual std::optional<std::int32_t> runningApplication(std::string_view bundleIdentifier) = 0;

    // The root of the application's elements. Never fails: when the process does not exist, reads of the root fail.
    virtual ElementHandle applicationElement(std::int32_t processIdentifier) = 0;

    // Asks for several attributes in one message. The values are in the order of the names. One is absent when the
    // attribute has no value, when AttributeValue cannot hold the value, and when the element is gone. A list may be
    // empty; its entries must all be elements.
    virtual std::expected<std::vector<std::optional<AttributeValue>>, ScreenFailure>
    attributes(const ElementHandle& element, std::span<const std::string_view> names) = 0;

    // One attribute alone; absent also when the message fails.
    std::optional<AttributeValue> attribute(const ElementHandle& element, std::string_view name) {
        auto values = attributes(element, {&name, 1});
        return values ? std::move(values->front()) : std::nullopt;
    }

    // True when the other program accepted the action within `answerTime`. A program that shows a dialog may answer
    // only when the dialog is closed, so an action that is not answered has usually worked.
    virtual bool perform(const ElementHandle& element, std::string_view action) = 0;
};

} // namespace lumbrine
