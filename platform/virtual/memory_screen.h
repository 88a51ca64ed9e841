// Other programs' user interfaces in memory: trees of elements behind the Accessibility seam, for tests and for a
// simulated Pro Tools.
#pragma once

#include "platform/api/accessibility.h"

#include <atomic>
#include <compare>
#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <unordered_map>

namespace lumbrine {

// Everything may be called on any thread, in virtual and in real time. Trusted from the start. The elements may refer
// to each other as they like, also in a circle.
class MemoryScreen final : public Accessibility {
public:
    // One element of one program. The default is none: it may be named in attributes, and its reads fail.
    struct Element {
        std::uint64_t number = 0; // never given twice
        friend auto operator<=>(Element, Element) = default;
    };

    // A value of a kind that the seam does not carry: a number, a position, a list of texts.
    struct OtherKind {
        friend bool operator==(OtherKind, OtherKind) = default;
    };

    using Value = std::variant<Element, std::vector<Element>, std::string, bool, OtherKind>;
    using Attributes = std::map<std::string, Value, std::less<>>;

    // The program runs from now on; the result is the root of its elements. Of several with one bundle identifier the
    // first is found.
    Element launch(std::string bundleIdentifier, std::int32_t processIdentifier);

    // The program ends, and with it every element that its root leads to by any attribute.
    void quit(std::int32_t processIdentifier);

    Element add(Attributes attributes);

    // The element is gone with all that its "AXChildren" lead to; whoever refers to it goes on doing so.
    void remove(Element element);

    // Nothing happens to an element that is gone.
    void set(Element element, std::string_view attribute, Value value);
    void unset(Element element, std::string_view attribute);
    void append(Element parent, std::string_view listAttribute, Element child); // makes the list if there is none

    // What the element has, not counted as a read.
    std::optional<Value> value(Element element, std::string_view attribute) const;

    void setTrusted(bool trusted);

    struct Read {
        Element element;
        std::string_view attribute;
        std::uint64_t number; // 1 is the first read of this screen
    };

    // Asked before each read, on the reading thread and with no lock held; answers whether the read may go on, else it
    // fails. It may change the tree, sleep, or withdraw the trust.
    void watchReads(std::function<bool(const Read&)> watcher);

    // Told each action on an element that is there, on the acting thread and with no lock held; answers whether the
    // program takes it. Without a watcher every action is taken.
    void watchActions(std::function<bool(Element, std::string_view action)> watcher);

    std::uint64_t calls() const; // of anything in the seam
    std::uint64_t reads() const; // of attributes
    int prompts() const;         // how often the user was shown where to allow it
    int liveHandles() const;     // held by anyone; copies of a handle count once

    bool isTrusted() override;
    bool isTrustedOrPrompt() override;
    std::optional<std::int32_t> runningApplication(std::string_view bundleIdentifier) override;
    ElementHandle applicationElement(std::int32_t processIdentifier) override;
    std::optional<AttributeValue> attribute(const ElementHandle& element, std::string_view name) override;
    bool perform(const ElementHandle& element, std::string_view action) override;

private:
    class Hold;
    struct Application {
        std::string bundleIdentifier;
        std::int32_t processIdentifier;
        Element root;
    };
    using Elements = std::unordered_map<std::uint64_t, Attributes>;
    using HandleCount = std::atomic<int>;

    void removeAllBehind(Element first, bool childrenOnly);
    ElementHandle hold(Element element) const;
    AttributeValue handOut(const Element& element) const;
    AttributeValue handOut(const std::vector<Element>& list) const;

    const std::shared_ptr<HandleCount> handles = std::make_shared<HandleCount>(0);

    // Plain and held for look-ups only: it is taken on threads that hold a Mutex of the runtime.
    mutable std::mutex lock;
    Elements elements;
    std::vector<Application> applications;
    std::uint64_t lastNumber = 0;
    bool trusted = true;
    std::uint64_t callCount = 0;
    std::uint64_t readCount = 0;
    int promptCount = 0;
    std::shared_ptr<const std::function<bool(const Read&)>> readWatcher;
    std::shared_ptr<const std::function<bool(Element, std::string_view)>> actionWatcher;
};

} // namespace lumbrine
