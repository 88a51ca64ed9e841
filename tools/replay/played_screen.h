// The screen as a recording has it.
#pragma once

#include "platform/api/accessibility.h"
#include "tools/replay/tape.h"

#include <cstdint>

namespace lumbrine::blackbox {

class PlayedScreen final : public Accessibility {
public:
    // All outlive it.
    PlayedScreen(const std::vector<Record>& records, const VirtualRuntime& itsRuntime, TapeClock& itsClock);

    bool isTrusted() override;
    bool isTrustedOrPrompt() override { return isTrusted(); }
    std::optional<std::int32_t> runningApplication(std::string_view bundleIdentifier) override;
    ElementHandle applicationElement(std::int32_t processIdentifier) override;
    std::expected<std::vector<std::optional<AttributeValue>>, ScreenFailure>
    attributes(const ElementHandle& element, std::span<const std::string_view> names) override;
    bool perform(const ElementHandle& element, std::string_view action) override;

private:
    const VirtualRuntime& runtime;
    TapeClock& clock;
    Lane trusts, applications, reads, presses;
    bool trusted = false;
};

// The values that a record of a read has, in the order of the names that were asked for; absent where it has none.
std::vector<std::optional<AttributeValue>> valuesIn(std::string_view text, std::span<const std::string_view> names);

} // namespace lumbrine::blackbox
