// Facts about where the host's surfaces go and what they show there.
#pragma once

#include "tools/blackbox/bank_march.h"
#include "tools/blackbox/facts.h"
#include "tools/blackbox/hui_words.h"

#include <array>
#include <map>
#include <optional>

namespace lumbrine::blackbox {

// Reads positions, names and widths from what the receiver told its clients, who were shown what had settled.
class PlaceFacts {
public:
    void came(const TimedRecord& record);
    void sent(const TimedRecord& record);
    void told(const TimedRecord& record);

    std::vector<Fact> finish();

private:
    static constexpr std::size_t mostStrips = 16;

    void judgeNames();
    static void vote(Fact& fact, const std::string& answer, const TimedRecord& record, const std::string& seen);

    HUIWords fromHost, toHost;
    BankMarch march;
    std::optional<int> offset;
    std::array<std::string, mostStrips> fullNames;
    std::map<std::string, std::string> shortened; // the display of a name
    std::array<std::string, mostStrips> rings;
    std::optional<std::int64_t> panPressed;
    bool ringsMoved = false;
    Fact names{"short names"}, pan{"PAN again"};
};

} // namespace lumbrine::blackbox
