#include "platform/recorded/recorded_accessibility.h"

#include <utility>

namespace lumbrine {

using blackbox::ScreenEvent;

namespace {

class NumberedElement final : public AccessibleElement {
public:
    NumberedElement(ElementHandle its, std::uint32_t itsNumber) : element(std::move(its)), number(itsNumber) {}

    const ElementHandle element;
    const std::uint32_t number;
};

const NumberedElement& numberedOf(const ElementHandle& element) {
    return static_cast<const NumberedElement&>(*element); // a handle comes from the object that it is passed to
}

std::string textOf(const ElementHandle& element) {
    return "#" + std::to_string(numberedOf(element).number);
}

// "[#5-#9 #12]": the elements of a list mostly have consecutive numbers, and a long list has to fit a record.
std::string textOf(const std::vector<ElementHandle>& elements) {
    std::string text = "[";
    for (std::size_t first = 0; first < elements.size();) {
        std::size_t last = first;
        while (last + 1 < elements.size() &&
               numberedOf(elements[last + 1]).number == numberedOf(elements[last]).number + 1)
            ++last;
        text += (first > 0 ? " " : "") + textOf(elements[first]);
        if (last > first) text += "-" + textOf(elements[last]);
        first = last + 1;
    }
    return text + "]";
}

std::string textOf(const std::string& text) {
    return "\"" + text + "\"";
}

std::string textOf(bool value) {
    return value ? "true" : "false";
}

std::string textOf(const std::optional<AttributeValue>& value) {
    return value ? std::visit([](const auto& content) { return textOf(content); }, *value) : "-";
}

} // namespace

bool RecordedAccessibility::isTrusted() {
    return trust(screen.isTrusted());
}

bool RecordedAccessibility::isTrustedOrPrompt() {
    return trust(screen.isTrustedOrPrompt());
}

std::optional<std::int32_t> RecordedAccessibility::runningApplication(std::string_view bundleIdentifier) {
    const auto process = screen.runningApplication(bundleIdentifier);
    note(ScreenEvent::application, process.value_or(-1), 0, bundleIdentifier);
    return process;
}

ElementHandle RecordedAccessibility::applicationElement(std::int32_t processIdentifier) {
    return numbered(screen.applicationElement(processIdentifier));
}

std::expected<std::vector<std::optional<AttributeValue>>, ScreenFailure>
RecordedAccessibility::attributes(const ElementHandle& element, std::span<const std::string_view> names) {
    const NumberedElement& asked = numberedOf(element);
    auto values = screen.attributes(asked.element, names);
    if (!values) {
        const int failure = values.error() == ScreenFailure::noAnswer ? -1 : -2;
        note(ScreenEvent::read, failure, asked.number, names.empty() ? std::string_view() : names.front());
        return values;
    }
    std::string text;
    for (std::size_t i = 0; i < values->size(); ++i) {
        auto& value = (*values)[i];
        if (value) value = numbered(std::move(*value));
        text += (i == 0 ? "" : " ") + std::string(names[i]) + "=" + textOf(value);
    }
    note(ScreenEvent::read, 0, asked.number, text);
    return values;
}

bool RecordedAccessibility::perform(const ElementHandle& element, std::string_view action) {
    const NumberedElement& pressed = numberedOf(element);
    const bool accepted = screen.perform(pressed.element, action);
    note(ScreenEvent::pressed, accepted ? 0 : -1, pressed.number, action);
    return accepted;
}

ElementHandle RecordedAccessibility::numbered(ElementHandle element) {
    return std::make_shared<NumberedElement>(std::move(element), ++elements);
}

AttributeValue RecordedAccessibility::numbered(AttributeValue value) {
    if (auto* element = std::get_if<ElementHandle>(&value)) *element = numbered(std::move(*element));
    if (auto* list = std::get_if<std::vector<ElementHandle>>(&value))
        for (ElementHandle& element : *list)
            element = numbered(std::move(element));
    return value;
}

// Asked often: recorded when the answer changes.
bool RecordedAccessibility::trust(bool answer) {
    if (lastTrust.exchange(answer ? 1 : 0) != (answer ? 1 : 0)) note(ScreenEvent::trust, answer ? 1 : 0, 0, {});
    return answer;
}

void RecordedAccessibility::note(ScreenEvent event, std::int32_t result, std::uint32_t element,
                                 std::string_view text) const {
    const blackbox::ScreenHead head{.result = result, .element = element};
    recorder.note(blackbox::Kind::screen, event, {blackbox::bytesOf(head), blackbox::textBytes(text)});
}

} // namespace lumbrine
