#include "tools/blackbox/facts.h"

#include "tools/blackbox/place_facts.h"
#include "tools/blackbox/wire_facts.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace lumbrine::blackbox {

// A user at the host or a lost message may look like another rule, so a few votes against do not count.
std::string Fact::answer() const {
    long all = 0;
    for (const auto& [answer, count] : votes)
        all += count;
    for (const auto& [answer, count] : votes)
        if (count * 10 >= all * 9) return answer;
    return {};
}

std::vector<Fact> factsOf(const std::vector<TimedRecord>& records) {
    WireFacts wire;
    PlaceFacts place;
    for (const TimedRecord& record : records) {
        switch (record.record.kind) {
        case Kind::midiIn:
            wire.came(record);
            place.came(record);
            break;
        case Kind::midiOut:
            wire.sent(record);
            place.sent(record);
            break;
        case Kind::datagramOut:
            place.told(record);
            break;
        default:
            break;
        }
    }
    std::vector<Fact> all = place.finish();
    std::ranges::move(wire.finish(), std::back_inserter(all));
    return all;
}

std::string textOf(const std::vector<Fact>& facts) {
    std::string text;
    for (const Fact& fact : facts) {
        std::string line = fact.question + ": ";
        line.resize(std::max<std::size_t>(line.size(), 24), ' ');
        const std::string answer = fact.answer();
        line += fact.votes.empty() ? "nothing tells" : answer.empty() ? "both ways" : answer;
        for (const auto& [vote, count] : fact.votes)
            line += (&vote == &fact.votes.begin()->first ? " (" : ", ") + std::to_string(count) +
                    (vote == answer ? " times" : " times " + vote);
        if (!fact.votes.empty()) line += ")";
        text += line + "\n";
        if (!fact.example.empty()) text.append(24, ' ').append("for example ").append(fact.example).append("\n");
    }
    return text;
}

} // namespace lumbrine::blackbox
