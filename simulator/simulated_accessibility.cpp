#include "simulator/simulated_accessibility.h"

#include <utility>

namespace lumbrine {

class SimulatedAccessibility::Handle final : public AccessibleElement {
public:
    Handle(const ScreenElement& element, bool gone, std::shared_ptr<std::atomic<int>> handles)
        : element(element), gone(gone), handles(std::move(handles)) {
        ++*this->handles;
    }
    ~Handle() override { --*handles; }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    const ScreenElement element;
    const bool gone;

private:
    const std::shared_ptr<std::atomic<int>> handles;
};

SimulatedAccessibility::SimulatedAccessibility(Runtime& runtime, const ScreenOptions& options, std::uint64_t seed,
                                               OnScreen look, OnScreen act)
    : runtime(runtime), look(std::move(look)), act(std::move(act)), trustGiven(options.trusted),
      failOneIn(options.failOneIn), vanishOneIn(options.vanishOneIn), mutex(runtime), chance(seed + 4) {}

void SimulatedAccessibility::setFaults(int reads, int elements) {
    failOneIn = reads;
    vanishOneIn = elements;
}

void SimulatedAccessibility::rest() {
    setTrusted(true);
    setRunning(true);
    setFaults(0, 0);
}

void SimulatedAccessibility::beforeRead(std::function<void(std::uint64_t)> observer) {
    readObserver = std::move(observer);
}

void SimulatedAccessibility::onPress(std::function<void(const std::string&)> observer) {
    pressObserver = std::move(observer);
}

bool SimulatedAccessibility::isTrustedOrPrompt() {
    if (trustGiven) return true;
    ++promptCount;
    return false;
}

std::optional<std::int32_t> SimulatedAccessibility::runningApplication(std::string_view bundleIdentifier) {
    if (bundleIdentifier != "com.avid.ProTools" || !programRuns) return std::nullopt;
    return processIdentifier;
}

ElementHandle SimulatedAccessibility::applicationElement(std::int32_t process) {
    return hold({ScreenElement::Kind::application}, process != processIdentifier);
}

std::expected<std::vector<std::optional<AttributeValue>>, ScreenFailure>
SimulatedAccessibility::attributes(const ElementHandle& element, std::span<const std::string_view> names) {
    std::vector<std::optional<AttributeValue>> values(names.size());
    if (!trustGiven) return std::unexpected(ScreenFailure::refused);
    if (!programRuns) return values;
    const std::uint64_t number = ++readCount;
    if (readObserver) readObserver(number);
    if (!trustGiven) return std::unexpected(ScreenFailure::refused);
    const auto& held = static_cast<const Handle&>(*element);
    if (held.gone || happens(failOneIn)) return values;
    std::vector<std::optional<ScreenValue>> shown;
    look([&](const SimulatedScreen& screen, TimePoint now) {
        for (const std::string_view name : names)
            shown.push_back(screen.attribute(held.element, name, now));
    });
    if (shown.empty()) {
        runtime.sleepFor(answerTime);
        return std::unexpected(ScreenFailure::noAnswer);
    }
    for (std::size_t i = 0; i < names.size(); ++i)
        if (shown[i]) values[i] = handOut(*std::move(shown[i]));
    return values;
}

bool SimulatedAccessibility::perform(const ElementHandle& element, std::string_view action) {
    const auto& held = static_cast<const Handle&>(*element);
    if (!trustGiven || !programRuns || action != "AXPress" || held.gone || happens(failOneIn)) return false;
    bool isAnswered = false;
    std::optional<std::string> pressed;
    act([&](SimulatedScreen& screen, TimePoint now) {
        isAnswered = true;
        pressed = screen.press(held.element, now);
    });
    if (!isAnswered) runtime.sleepFor(answerTime);
    if (pressed && pressObserver) pressObserver(*pressed);
    return pressed.has_value();
}

bool SimulatedAccessibility::happens(int oneIn) {
    if (oneIn == 0) return false;
    const Lock lock(mutex);
    return chance.oneIn(static_cast<std::uint64_t>(oneIn));
}

ElementHandle SimulatedAccessibility::hold(const ScreenElement& element, bool vanishes) {
    return std::make_shared<const Handle>(element, vanishes, handles);
}

AttributeValue SimulatedAccessibility::handOut(ScreenValue value) {
    if (auto* text = std::get_if<std::string>(&value)) return std::move(*text);
    if (const bool* flag = std::get_if<bool>(&value)) return *flag;
    if (const auto* element = std::get_if<ScreenElement>(&value)) return hold(*element, happens(vanishOneIn));
    std::vector<ElementHandle> list;
    for (const ScreenElement& element : std::get<std::vector<ScreenElement>>(value))
        list.push_back(hold(element, happens(vanishOneIn)));
    return list;
}

} // namespace lumbrine
