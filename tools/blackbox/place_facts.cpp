#include "tools/blackbox/place_facts.h"

#include "blackbox/payload.h"
#include "remote/receiver_message.h"
#include "seal/seal_trailer.h"
#include "simulator/short_name.h"

#include <algorithm>
#include <utility>
#include <variant>

namespace lumbrine::blackbox {

namespace {

constexpr std::int64_t turns = 1'000'000'000; // of the rings after PAN

const std::vector<std::pair<ShortNameRule, std::string>>& shortNameRules() {
    static const std::vector<std::pair<ShortNameRule, std::string>> rules{
        {ShortNameRule::cut, "the first four characters"},
        {ShortNameRule::vowels, "small vowels are dropped"},
        {ShortNameRule::colliding, "numbers and sides at the end are dropped"}};
    return rules;
}

bool isASCII(const std::string& text) {
    return std::ranges::all_of(text, [](char c) { return c >= 0x20 && c < 0x7F; });
}

} // namespace

void PlaceFacts::sent(const TimedRecord& record) {
    if (record.record.payload.size() < sizeof(ResultHead)) return;
    for (const HUIWord& word :
         toHost.read(record.record.channel, Direction::toHost, behind<ResultHead>(record.record))) {
        if (word.value != 1) continue;
        if (word.isBankKey) march.press(record, word.text);
        if (word.text == "key zone-0b port-2 down") {
            if (panPressed && !ringsMoved) ++pan.votes["changes nothing"];
            panPressed = record.record.time;
            ringsMoved = false;
        }
    }
}

void PlaceFacts::came(const TimedRecord& record) {
    for (const HUIWord& word : fromHost.read(record.record.channel, Direction::fromHost, record.record.payload)) {
        if (word.kind == HUIWord::Kind::display && word.strip)
            march.display(static_cast<std::size_t>(*word.strip), word.text.substr(word.text.find('"')));
        if (word.kind != HUIWord::Kind::ring || !word.strip) continue;
        std::string& ring = rings.at(static_cast<std::size_t>(*word.strip));
        const bool moved = !ring.empty() && ring != word.text;
        ring = word.text;
        if (!moved || !panPressed || record.record.time - *panPressed > turns || std::exchange(ringsMoved, true))
            continue;
        vote(pan, "changes the rings", record, word.text);
    }
}

void PlaceFacts::told(const TimedRecord& record) {
    if (record.record.payload.size() < sizeof(DatagramHead)) return;
    const auto message = remote::parseReceiverMessage(seal::messageOf(behind<DatagramHead>(record.record)));
    if (!message) return;
    if (const auto* position = std::get_if<remote::BankPos>(&*message)) {
        if (std::exchange(offset, position->offset) != position->offset) fullNames.fill({});
    } else if (const auto* full = std::get_if<remote::FullName>(&*message)) {
        fullNames.at(full->strip.slot()) = full->name;
    } else if (const auto* shown = std::get_if<remote::TrackName>(&*message)) {
        const std::size_t strip = shown->strip.slot();
        if (fullNames.at(strip).empty() || !isASCII(fullNames.at(strip)) || !isASCII(shown->name)) return;
        shortened[fullNames.at(strip)] = shown->name;
    }
}

// Names that every rule shortens alike tell nothing, and rules that all names follow equally well neither.
void PlaceFacts::judgeNames() {
    long telling = 0;
    for (const auto& [name, display] : shortened) {
        std::vector<std::string> fitting;
        for (const auto& [rule, words] : shortNameRules()) {
            const DisplayText text = shortName(name, rule, NonASCIIRule::questionMark);
            if (std::string_view(text.data(), text.size()) == display) fitting.push_back(words);
        }
        if (fitting.size() == shortNameRules().size()) continue;
        ++telling;
        for (const std::string& words : fitting)
            if (++names.votes[words] == 1) names.example = "\"" + name + "\" is \"" + display + "\"";
    }
    std::erase_if(names.votes, [telling](const auto& vote) { return vote.second * 10 < telling * 9; });
    if (names.votes.size() != 1) names = {names.question};
}

std::vector<Fact> PlaceFacts::finish() {
    judgeNames();
    if (pan.votes.contains("changes the rings")) pan.votes.erase("changes nothing"); // as for a mono track
    std::vector<Fact> all = march.finish();
    all.insert(all.end(), {names, pan});
    return all;
}

void PlaceFacts::vote(Fact& fact, const std::string& answer, const TimedRecord& record, const std::string& seen) {
    if (++fact.votes[answer] == 1) fact.example = dateAndTime(record.wall) + " " + seen;
}

} // namespace lumbrine::blackbox
