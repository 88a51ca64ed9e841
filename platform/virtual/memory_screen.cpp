#include "platform/virtual/memory_screen.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

class MemoryScreen::Hold final : public AccessibleElement {
public:
    Hold(Element element, std::shared_ptr<HandleCount> count) : element(element), count(std::move(count)) {
        ++*this->count;
    }
    ~Hold() override { --*count; }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

    static Element elementOf(const ElementHandle& handle) { return static_cast<const Hold&>(*handle).element; }

private:
    const Element element;
    const std::shared_ptr<HandleCount> count;
};

MemoryScreen::Element MemoryScreen::launch(std::string bundleIdentifier, std::int32_t processIdentifier) {
    const Element root = add({});
    const std::scoped_lock held(lock);
    applications.push_back({std::move(bundleIdentifier), processIdentifier, root});
    return root;
}

void MemoryScreen::quit(std::int32_t processIdentifier) {
    const std::scoped_lock held(lock);
    const auto application = std::ranges::find(applications, processIdentifier, &Application::processIdentifier);
    if (application == applications.end()) return;
    removeAllBehind(application->root, false); // also windows and menus, which are not children
    applications.erase(application);
}

MemoryScreen::Element MemoryScreen::add(Attributes attributes) {
    const std::scoped_lock held(lock);
    elements.emplace(++lastNumber, std::move(attributes));
    return {lastNumber};
}

void MemoryScreen::remove(Element element) {
    const std::scoped_lock held(lock);
    removeAllBehind(element, true);
}

void MemoryScreen::removeAllBehind(Element first, bool childrenOnly) {
    std::vector<Element> doomed{first};
    while (!doomed.empty()) {
        const auto found = elements.find(doomed.back().number);
        doomed.pop_back();
        if (found == elements.end()) continue;
        for (const auto& [name, value] : found->second) {
            if (childrenOnly && name != "AXChildren") continue;
            if (const auto* one = std::get_if<Element>(&value)) doomed.push_back(*one);
            if (const auto* list = std::get_if<std::vector<Element>>(&value))
                doomed.insert(doomed.end(), list->begin(), list->end());
        }
        elements.erase(found);
    }
}

void MemoryScreen::set(Element element, std::string_view attribute, Value value) {
    const std::scoped_lock held(lock);
    const auto found = elements.find(element.number);
    if (found != elements.end()) found->second.insert_or_assign(std::string(attribute), std::move(value));
}

void MemoryScreen::unset(Element element, std::string_view attribute) {
    const std::scoped_lock held(lock);
    const auto found = elements.find(element.number);
    if (found == elements.end()) return;
    const auto position = found->second.find(attribute);
    if (position != found->second.end()) found->second.erase(position);
}

void MemoryScreen::append(Element parent, std::string_view listAttribute, Element child) {
    const std::scoped_lock held(lock);
    const auto found = elements.find(parent.number);
    if (found == elements.end()) return;
    Value& value = found->second[std::string(listAttribute)];
    if (!std::holds_alternative<std::vector<Element>>(value)) value = std::vector<Element>();
    std::get<std::vector<Element>>(value).push_back(child);
}

std::optional<MemoryScreen::Value> MemoryScreen::value(Element element, std::string_view attribute) const {
    const std::scoped_lock held(lock);
    const auto found = elements.find(element.number);
    if (found == elements.end()) return std::nullopt;
    const auto position = found->second.find(attribute);
    if (position == found->second.end()) return std::nullopt;
    return position->second;
}

void MemoryScreen::setTrusted(bool isSo) {
    const std::scoped_lock held(lock);
    trusted = isSo;
}

void MemoryScreen::setRefusing(bool refuses) {
    const std::scoped_lock held(lock);
    refusing = refuses;
}

void MemoryScreen::answerAfter(Runtime& runtime, Duration delay) {
    const std::scoped_lock held(lock);
    manner = {.runtime = &runtime, .delay = delay};
}

void MemoryScreen::Manner::wait() const {
    if (delay > Duration::zero()) runtime->sleepFor(std::min(delay, answerTime));
}

bool MemoryScreen::Read::asksFor(std::string_view attribute) const {
    return std::ranges::find(attributes, attribute) != attributes.end();
}

void MemoryScreen::watchReads(std::function<bool(const Read&)> watcher) {
    auto shared = std::make_shared<const std::function<bool(const Read&)>>(std::move(watcher));
    const std::scoped_lock held(lock);
    readWatcher.swap(shared);
}

void MemoryScreen::watchActions(std::function<bool(Element, std::string_view)> watcher) {
    auto shared = std::make_shared<const std::function<bool(Element, std::string_view)>>(std::move(watcher));
    const std::scoped_lock held(lock);
    actionWatcher.swap(shared);
}

std::uint64_t MemoryScreen::calls() const {
    const std::scoped_lock held(lock);
    return callCount;
}

std::uint64_t MemoryScreen::reads() const {
    const std::scoped_lock held(lock);
    return readCount;
}

int MemoryScreen::prompts() const {
    const std::scoped_lock held(lock);
    return promptCount;
}

int MemoryScreen::liveHandles() const {
    return handles->load();
}

bool MemoryScreen::isTrusted() {
    const std::scoped_lock held(lock);
    ++callCount;
    return trusted;
}

bool MemoryScreen::isTrustedOrPrompt() {
    const std::scoped_lock held(lock);
    ++callCount;
    if (!trusted) ++promptCount;
    return trusted;
}

std::optional<std::int32_t> MemoryScreen::runningApplication(std::string_view bundleIdentifier) {
    const std::scoped_lock held(lock);
    ++callCount;
    const auto found = std::ranges::find(applications, bundleIdentifier, &Application::bundleIdentifier);
    if (found == applications.end()) return std::nullopt;
    return found->processIdentifier;
}

ElementHandle MemoryScreen::applicationElement(std::int32_t processIdentifier) {
    const std::scoped_lock held(lock);
    ++callCount;
    const auto found = std::ranges::find(applications, processIdentifier, &Application::processIdentifier);
    return hold(found == applications.end() ? Element{} : found->root);
}

std::expected<std::vector<std::optional<AttributeValue>>, ScreenFailure>
MemoryScreen::attributes(const ElementHandle& handle, std::span<const std::string_view> names) {
    const Element element = Hold::elementOf(handle);
    std::uint64_t number = 0;
    std::shared_ptr<const std::function<bool(const Read&)>> watcher;
    {
        const std::scoped_lock held(lock);
        ++callCount;
        number = ++readCount;
        watcher = readWatcher;
    }
    // Without the lock, because the watcher may change the screen. The copy keeps it alive if it is replaced meanwhile.
    const bool succeeds = !watcher || !*watcher || (*watcher)({element, names, number});

    Manner answering;
    {
        const std::scoped_lock held(lock);
        if (!trusted || refusing) return std::unexpected(ScreenFailure::refused);
        answering = manner;
    }
    answering.wait();
    if (!answering.answers()) return std::unexpected(ScreenFailure::noAnswer);
    std::vector<std::optional<AttributeValue>> values(names.size());
    const std::scoped_lock held(lock);
    const auto found = elements.find(element.number);
    if (!succeeds || found == elements.end()) return values;
    std::ranges::transform(names, values.begin(), [&](std::string_view name) { return valueOf(found->second, name); });
    return values;
}

std::optional<AttributeValue> MemoryScreen::valueOf(const Attributes& held, std::string_view name) const {
    const auto position = held.find(name);
    if (position == held.end()) return std::nullopt;
    const Value& value = position->second;
    if (const auto* one = std::get_if<Element>(&value)) return handOut(*one);
    if (const auto* list = std::get_if<std::vector<Element>>(&value)) return handOut(*list);
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    if (const auto* flag = std::get_if<bool>(&value)) return *flag;
    return std::nullopt;
}

bool MemoryScreen::perform(const ElementHandle& handle, std::string_view action) {
    const Element element = Hold::elementOf(handle);
    std::shared_ptr<const std::function<bool(Element, std::string_view)>> watcher;
    bool acts = false;
    {
        const std::scoped_lock held(lock);
        ++callCount;
        if (!trusted || refusing || !elements.contains(element.number)) return false;
        watcher = actionWatcher;
        acts = manner.everActs();
    }
    const bool accepted = acts && (!watcher || !*watcher || (*watcher)(element, action)); // without the lock, as above
    Manner answering;
    {
        const std::scoped_lock held(lock);
        answering = manner;
    }
    answering.wait();
    return accepted && answering.answers();
}

ElementHandle MemoryScreen::hold(Element element) const {
    return std::make_shared<const Hold>(element, handles);
}

AttributeValue MemoryScreen::handOut(const Element& element) const {
    return hold(element);
}

AttributeValue MemoryScreen::handOut(const std::vector<Element>& list) const {
    std::vector<ElementHandle> handed;
    handed.reserve(list.size());
    for (const Element element : list)
        handed.push_back(hold(element));
    return handed;
}

} // namespace lumbrine
