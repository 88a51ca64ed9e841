// The accessibility interface, with a record of what was read and pressed.
#pragma once

#include "platform/api/accessibility.h"
#include "platform/recorded/recorder.h"

#include <atomic>
#include <string>

namespace lumbrine {

// Gives each element a number when the receiver gets it, so that a reader of the recording can follow who asked whom.
class RecordedAccessibility final : public Accessibility {
public:
    // Both outlive it.
    RecordedAccessibility(Accessibility& recorded, const Recorder& itsRecorder)
        : screen(recorded), recorder(itsRecorder) {}

    bool isTrusted() override;
    bool isTrustedOrPrompt() override;
    std::optional<std::int32_t> runningApplication(std::string_view bundleIdentifier) override;
    ElementHandle applicationElement(std::int32_t processIdentifier) override;
    std::expected<std::vector<std::optional<AttributeValue>>, ScreenFailure>
    attributes(const ElementHandle& element, std::span<const std::string_view> names) override;
    bool perform(const ElementHandle& element, std::string_view action) override;

private:
    ElementHandle numbered(ElementHandle element);
    AttributeValue numbered(AttributeValue value);
    bool trust(bool answer);
    void note(blackbox::ScreenEvent event, std::int32_t result, std::uint32_t element, std::string_view text) const;

    Accessibility& screen;
    const Recorder& recorder;
    std::atomic<std::uint32_t> elements{0};
    std::atomic<int> lastTrust{-1};
};

} // namespace lumbrine
