#include "tools/replay/replay_text.h"

#include "tools/blackbox/record_words.h"
#include "tools/replay/agreement.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace lumbrine::blackbox {

namespace {

constexpr std::size_t linesBefore = 8;
constexpr std::size_t linesAfter = 4;
constexpr std::size_t longestLine = 200;

// "+ 12.345678  surface-1 ← strip 1 fader 512": seconds since the program began.
std::string lineOf(char sign, const Record& record, std::int64_t began, const std::string& words) {
    std::array<char, 40> time{};
    std::snprintf(time.data(), time.size(), "%c %12.6f  ", sign, static_cast<double>(record.time - began) / 1e9);
    return time.data() + words.substr(0, longestLine) + "\n";
}

// The records from `first` to `last`. All before are read, too: words may depend on them.
std::string linesOf(char sign, const std::vector<Record>& records, std::size_t first, std::size_t last,
                    std::int64_t began) {
    RecordTeller teller;
    std::string text;
    for (std::size_t i = 0; i < std::min(last, records.size()); ++i) {
        const RecordWords words = teller.wordsOf(records[i]);
        if (i < first) continue;
        text += lineOf(sign, records[i], began, words.text.empty() ? "a part of a message" : words.text);
    }
    return text;
}

std::string agreementText(const Agreement& agreement) {
    std::array<char, 120> numbers{};
    std::snprintf(numbers.data(), numbers.size(), ": %zu of %zu the same, %zu replayed, up to %.1f ms apart\n",
                  agreement.same, agreement.recorded, agreement.replayed, inSeconds(agreement.latest) * 1000);
    return "  " + agreement.lane + numbers.data();
}

// Around a record that was not replayed.
std::string surroundings(const std::vector<Record>& records, std::uint64_t position, std::int64_t began) {
    const auto at = static_cast<std::size_t>(std::ranges::find(records, position, &Record::position) - records.begin());
    return linesOf(' ', records, at - std::min(at, linesBefore), at, began) + linesOf('-', records, at, at + 1, began) +
           linesOf(' ', records, at + 1, at + 1 + linesAfter, began);
}

std::string exactText(const Replay& replay, std::int64_t began) {
    const std::size_t at = replay.equal;
    return "The replay differs from the recording after " + std::to_string(at) + " of " +
           std::to_string(replay.recorded.size()) + " records (- recorded, + replayed):\n" +
           linesOf(' ', replay.recorded, at - std::min(at, linesBefore), at, began) +
           linesOf('-', replay.recorded, at, at + linesAfter, began) +
           linesOf('+', replay.replayed, at, at + linesAfter, began);
}

} // namespace

std::string textOf(const Replay& replay) {
    if (replay.isEqual())
        return "The replay is the same as the recording: " + std::to_string(replay.recorded.size()) + " records.\n";
    const std::int64_t began = replay.recorded.empty() ? 0 : replay.recorded.front().time;
    const std::vector<Agreement> lanes = agreements(replay);
    std::string text = "What the receiver sent, in order and without meters:\n";
    for (const Agreement& agreement : lanes)
        text += agreementText(agreement);
    // In real time even the first record took a moment longer than in virtual time.
    if (replay.equal > 0) return exactText(replay, began) + text;
    const Record* first = nullptr;
    for (const Agreement& agreement : lanes)
        if (agreement.missing != nullptr && (first == nullptr || agreement.missing->position < first->position))
            first = agreement.missing;
    if (first == nullptr) return text + "All that was recorded was replayed.\n";
    return text + "The first that was not replayed (-):\n" + surroundings(replay.recorded, first->position, began);
}

} // namespace lumbrine::blackbox
