#include "screen/element_access.h"

#include "base/composed_text.h"

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
std::optional<Kind> as(std::optional<AttributeValue> value) {
    if (!value || !std::holds_alternative<Kind>(*value)) return std::nullopt;
    return std::get<Kind>(*std::move(value));
}

} // namespace

std::optional<std::string> asText(std::optional<AttributeValue> value) {
    return as<std::string>(std::move(value));
}

std::optional<bool> asFlag(const std::optional<AttributeValue>& value) {
    return as<bool>(value);
}

std::optional<ElementHandle> asElement(std::optional<AttributeValue> value) {
    return as<ElementHandle>(std::move(value));
}

std::vector<ElementHandle> asList(std::optional<AttributeValue> value) {
    return as<std::vector<ElementHandle>>(std::move(value)).value_or(std::vector<ElementHandle>());
}

void ElementAccess::ask(const ElementHandle& element, std::span<const std::string_view> names,
                        std::span<std::optional<AttributeValue>> values) {
    if (!end && runtime.now() >= deadline) end = NoReading::tooLong;
    if (end) {
        ++unansweredCount;
        return;
    }
    auto answer = screen.attributes(element, names);
    if (!answer) return noteFailure(answer.error());
    lastWasUnanswered = false;
    std::ranges::move(*answer, values.begin());
    for (std::optional<AttributeValue>& value : values)
        takeIn(value);
}

void ElementAccess::noteFailure(ScreenFailure failure) {
    ++unansweredCount;
    if (failure == ScreenFailure::refused) {
        end = screen.isTrusted() ? NoReading::refused : NoReading::nothingShown;
    } else if (std::exchange(lastWasUnanswered, true)) {
        end = NoReading::noAnswer;
    }
}

void ElementAccess::takeIn(std::optional<AttributeValue>& value) {
    if (!value) return;
    if (auto* text = std::get_if<std::string>(&*value)) *text = composed(*text);
    auto* const list = std::get_if<std::vector<ElementHandle>>(&*value);
    if (list == nullptr) return;
    if (list->size() > elementsLeft) {
        elementsLeft = 0; // every later list is empty too
        list->clear();
    }
    elementsLeft -= list->size();
}

std::vector<ElementHandle> ElementAccess::elementList(const ElementHandle& element, std::string_view attribute) {
    if (elementsLeft == 0) return {};
    return asList(read(element, {attribute})[0]);
}

std::vector<ElementHandle> ElementAccess::windows(const ElementHandle& application) {
    return elementList(application, "AXWindows");
}

std::vector<ElementHandle> ElementAccess::children(const ElementHandle& element) {
    return elementList(element, "AXChildren");
}

std::string ElementAccess::textAttr(const ElementHandle& element, std::string_view attribute) {
    return asText(read(element, {attribute})[0]).value_or(std::string());
}

std::string ElementAccess::title(const ElementHandle& element) {
    return textAttr(element, "AXTitle");
}

std::optional<ElementHandle> ElementAccess::element(const ElementHandle& of, std::string_view attribute) {
    return asElement(read(of, {attribute})[0]);
}

bool ElementAccess::matches(const ElementHandle& element, const DescendantQuery& query) {
    auto [role, shown] = read(element, {"AXRole", "AXTitle"});
    if (asText(std::move(role)).value_or("") != query.role) return false;
    const std::string name = asText(std::move(shown)).value_or("");
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
