// What bank keys do to the displays of a host: several presses in one direction tell the rules apart.
#pragma once

#include "tools/blackbox/facts.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine::blackbox {

class BankMarch {
public:
    void display(std::size_t strip, const std::string& text) { displays.at(strip) = text; }
    void press(const TimedRecord& record, const std::string& key);

    // Left, right and last bank.
    std::vector<Fact> finish();

private:
    using Displays = std::array<std::string, 16>;
    enum class Step { none, part, full, blanks, unclear };

    void endStep(std::int64_t time);
    void endMarch();
    Step stepFrom(const Displays& before) const;

    Displays displays;
    Displays before;
    std::optional<TimedRecord> pressed;
    std::string direction;   // of the march: "left" or "right"
    std::vector<Step> steps; // of the march
    std::string when;
    Fact left{"bank left"}, right{"bank right"}, last{"last bank"};
};

} // namespace lumbrine::blackbox
