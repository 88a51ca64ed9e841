// The user interfaces of other programs, simulated in memory behind the Accessibility seam: trees of elements for tests
// and for the simulated Pro Tools.
#pragma once

#include "platform/api/accessibility.h"
#include "platform/api/runtime.h"

#include <atomic>
#include <compare>
#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <unordered_map>

namespace lumbrine {

// Any thread may call everything, in virtual and in real time. The process is trusted from the start. Elements may
// refer to each other in any way, also in a circle.
class MemoryScreen final : public Accessibility {
public:
    // One element of one program. A default-constructed one stands for no element: attributes may refer to it, and
    // reads of it fail.
    struct Element {
        std::uint64_t number = 0; // never reused
        friend auto operator<=>(Element, Element) = default;
    };

    // A value of a kind that the seam cannot return, such as a number, a position or a list of texts.
    struct OtherKind {
        friend bool operator==(OtherKind, OtherKind) = default;
    };

    using Value = std::variant<Element, std::vector<Element>, std::string, bool, OtherKind>;
    using Attributes = std::map<std::string, Value, std::less<>>;

    // Starts a program and returns the root of its elements. When several have the same bundle identifier,
    // runningApplication finds the first.
    Element launch(std::string bundleIdentifier, std::int32_t processIdentifier);

    // Ends the program and removes every element that can be reached from its root by any attribute.
    void quit(std::int32_t processIdentifier);

    Element add(Attributes attributes);

    // Removes the element and everything below it by "AXChildren". References to removed elements stay, and reads
    // through them fail.
    void remove(Element element);

    // These three do nothing when the element has been removed.
    void set(Element element, std::string_view attribute, Value value);
    void unset(Element element, std::string_view attribute);
    void append(Element parent, std::string_view listAttribute, Element child); // creates the list if there is none

    // The value of an attribute. Not counted as a read.
    std::optional<Value> value(Element element, std::string_view attribute) const;

    void setTrusted(bool trusted);

    // Makes the system refuse every read and action although it says that this process is trusted.
    void setRefusing(bool refuses);

    // Makes every read and every action take so long. Those that take longer than `answerTime` are carried out, but
    // count as unanswered after that time. 0 is what a new screen has.
    void answerAfter(Runtime& runtime, Duration delay);

    // Makes every read and every action go unanswered, without effect, until `answerAfter` is called.
    void stopAnswering(Runtime& runtime) { answerAfter(runtime, Duration::max()); }

    // One message that asks for attributes.
    struct Read {
        Element element;
        std::span<const std::string_view> attributes;
        std::uint64_t number; // 1 is the first read of this screen

        bool asksFor(std::string_view attribute) const;
    };

    // Sets a function that is called before each read, on the reading thread and with no lock held. When it returns
    // false, the read finds no values. It may change the tree, sleep, or withdraw the trust.
    void watchReads(std::function<bool(const Read&)> watcher);

    // Sets a function that is called for each action on an existing element, on the acting thread and with no lock
    // held. It returns whether the program accepts the action. Without it, every action is accepted.
    void watchActions(std::function<bool(Element, std::string_view action)> watcher);

    std::uint64_t calls() const; // of all functions of the seam
    std::uint64_t reads() const; // messages that asked for attributes
    int prompts() const;         // how often the system's request for trust was shown to the user
    int liveHandles() const;     // handles that exist; copies of one handle count once

    bool isTrusted() override;
    bool isTrustedOrPrompt() override;
    std::optional<std::int32_t> runningApplication(std::string_view bundleIdentifier) override;
    ElementHandle applicationElement(std::int32_t processIdentifier) override;
    std::expected<std::vector<std::optional<AttributeValue>>, ScreenFailure>
    attributes(const ElementHandle& element, std::span<const std::string_view> names) override;
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

    // How the program answers messages.
    struct Manner {
        Runtime* runtime = nullptr;
        Duration delay{};

        bool answers() const { return delay <= answerTime; }
        bool everActs() const { return delay != Duration::max(); }
        void wait() const; // for the answer, or until it counts as none
    };

    std::optional<AttributeValue> valueOf(const Attributes& held, std::string_view name) const;
    void removeAllBehind(Element first, bool childrenOnly);
    ElementHandle hold(Element element) const;
    AttributeValue handOut(const Element& element) const;
    AttributeValue handOut(const std::vector<Element>& list) const;

    const std::shared_ptr<HandleCount> handles = std::make_shared<HandleCount>(0);

    // A std::mutex and held for look-ups only, because callers may hold a Mutex of the runtime.
    mutable std::mutex lock;
    Elements elements;
    std::vector<Application> applications;
    std::uint64_t lastNumber = 0;
    bool trusted = true;
    bool refusing = false;
    Manner manner;
    std::uint64_t callCount = 0;
    std::uint64_t readCount = 0;
    int promptCount = 0;
    std::shared_ptr<const std::function<bool(const Read&)>> readWatcher;
    std::shared_ptr<const std::function<bool(Element, std::string_view)>> actionWatcher;
};

} // namespace lumbrine
