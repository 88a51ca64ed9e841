#include "tools/replay/played_screen.h"

#include "blackbox/payload.h"

#include <charconv>

namespace lumbrine::blackbox {

namespace {

Lane::Wanted screenEvents(ScreenEvent event) {
    return [event](const Record& record) {
        return record.kind == Kind::screen && record.channel == static_cast<std::uint8_t>(event);
    };
}

ElementHandle newElement() {
    return std::make_shared<AccessibleElement>(); // who asks numbers elements in the order in which they come
}

// "[#5-#9 #12]": so many elements.
std::size_t countOf(std::string_view list) {
    std::size_t count = 0;
    std::size_t before = 0;
    for (std::size_t at = list.find('#'); at != std::string_view::npos; at = list.find('#', at + 1)) {
        std::size_t number = 0;
        std::from_chars(list.data() + at + 1, list.data() + list.size(), number);
        count += list[at - 1] == '-' && number > before ? number - before : 1;
        before = number;
    }
    return count;
}

std::optional<AttributeValue> valueOf(std::string_view text) {
    if (text == "true" || text == "false") return text == "true";
    if (text.starts_with('#')) return newElement();
    if (text.size() >= 2 && text.starts_with('"') && text.ends_with('"'))
        return std::string(text.substr(1, text.size() - 2));
    if (!text.starts_with('[')) return std::nullopt;
    std::vector<ElementHandle> list(countOf(text));
    for (ElementHandle& element : list)
        element = newElement();
    return list;
}

} // namespace

std::vector<std::optional<AttributeValue>> valuesIn(std::string_view text, std::span<const std::string_view> names) {
    std::vector<std::optional<AttributeValue>> values;
    for (std::size_t i = 0; i < names.size(); ++i) {
        text.remove_prefix(std::min(text.size(), names[i].size() + 1)); // the name and "="
        const std::size_t end = i + 1 < names.size() ? text.find(" " + std::string(names[i + 1]) + "=") : text.size();
        values.push_back(valueOf(text.substr(0, end)));
        text.remove_prefix(std::min(text.size(), end == std::string_view::npos ? end : end + 1));
    }
    return values;
}

PlayedScreen::PlayedScreen(const std::vector<Record>& records, const VirtualRuntime& itsRuntime, TapeClock& itsClock)
    : runtime(itsRuntime), clock(itsClock), trusts(records, screenEvents(ScreenEvent::trust)),
      applications(records, screenEvents(ScreenEvent::application)), reads(records, screenEvents(ScreenEvent::read)),
      presses(records, screenEvents(ScreenEvent::pressed)) {}

// The recording has the changes only, each at the time of the first question after it.
bool PlayedScreen::isTrusted() {
    while (trusts.front() != nullptr && TimePoint{Duration{trusts.front()->time}} <= runtime.now())
        trusted = headOf<ScreenHead>(*trusts.take())->result == 1;
    return trusted;
}

std::optional<std::int32_t> PlayedScreen::runningApplication(std::string_view) {
    const Record* const answer = applications.take();
    if (answer == nullptr || !clock.answerAt(*answer)) return std::nullopt;
    const std::int32_t process = headOf<ScreenHead>(*answer)->result;
    return process < 0 ? std::nullopt : std::optional(process);
}

ElementHandle PlayedScreen::applicationElement(std::int32_t) {
    return newElement();
}

std::expected<std::vector<std::optional<AttributeValue>>, ScreenFailure>
PlayedScreen::attributes(const ElementHandle&, std::span<const std::string_view> names) {
    const Record* const answer = reads.take();
    if (answer == nullptr || !clock.answerAt(*answer)) return std::unexpected(ScreenFailure::noAnswer);
    const std::int32_t result = headOf<ScreenHead>(*answer)->result;
    if (result < 0) return std::unexpected(result == -1 ? ScreenFailure::noAnswer : ScreenFailure::refused);
    return valuesIn(asText(behind<ScreenHead>(*answer)), names);
}

bool PlayedScreen::perform(const ElementHandle&, std::string_view) {
    const Record* const answer = presses.take();
    return answer != nullptr && clock.answerAt(*answer) && headOf<ScreenHead>(*answer)->result == 0;
}

} // namespace lumbrine::blackbox
