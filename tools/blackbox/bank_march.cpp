#include "tools/blackbox/bank_march.h"

#include <algorithm>
#include <set>
#include <utility>

namespace lumbrine::blackbox {

namespace {

constexpr std::int64_t settlesAfter = 150'000'000; // a press after less than this one may have come too early
constexpr std::int64_t longestMarch = 5'000'000'000;

bool isBlank(const std::string& display) {
    return display.empty() || display == "\"    \"";
}

} // namespace

void BankMarch::press(const TimedRecord& record, const std::string& key) {
    endStep(record.record.time);
    const bool isBank = key.contains(" bank-");
    const std::string way = key.contains("right") ? "right" : "left";
    const bool goesOn =
        isBank && way == direction && pressed && record.record.time - pressed->record.time < longestMarch;
    if (!goesOn) endMarch();
    direction = isBank ? way : "";
    pressed = record;
    before = displays;
    if (when.empty()) when = dateAndTime(record.wall);
}

void BankMarch::endStep(std::int64_t time) {
    if (!pressed || direction.empty()) return;
    steps.push_back(time - pressed->record.time < settlesAfter ? Step::unclear : stepFrom(before));
}

BankMarch::Step BankMarch::stepFrom(const Displays& old) const {
    std::size_t width = displays.size();
    while (width > 0 && old[width - 1].empty())
        --width; // strips of a surface that is not there
    const auto named =
        static_cast<std::size_t>(std::count_if(old.begin(), old.begin() + static_cast<std::ptrdiff_t>(width),
                                               [](const std::string& display) { return !isBlank(display); }));
    const std::set<std::string> different(old.begin(), old.begin() + static_cast<std::ptrdiff_t>(width));
    if (width == 0 || named < width || different.size() < width) return Step::unclear;
    if (displays == old) return Step::none;
    const Displays& now = displays;
    const auto isShift = [&](std::size_t by) {
        for (std::size_t i = 0; i + by < width; ++i)
            if (direction == "right" ? now[i] != old[i + by] : now[i + by] != old[i]) return false;
        return true;
    };
    for (std::size_t by = 1; by < width; ++by)
        if (isShift(by)) return Step::part;
    const bool hasOld = std::any_of(now.begin(), now.begin() + static_cast<std::ptrdiff_t>(width),
                                    [&](const std::string& display) { return different.contains(display); });
    if (hasOld) return Step::unclear;
    return isBlank(now[width - 1]) && !isBlank(now[0]) ? Step::blanks : Step::full;
}

// A host that goes by the width has the remainder at the end of a march, one that aligns at its beginning.
void BankMarch::endMarch() {
    const auto has = [this](Step first, Step second) {
        return std::ranges::adjacent_find(steps, [=](Step a, Step b) { return a == first && b == second; }) !=
               steps.end();
    };
    const auto vote = [this](Fact& fact, const char* answer) {
        if (++fact.votes[answer] == 1) fact.example = when;
    };
    Fact& way = direction == "left" ? left : right;
    if (has(Step::part, Step::full)) vote(way, "to a multiple of the width");
    if (direction == "left" && has(Step::full, Step::part)) vote(left, "by the width");
    if (direction == "right" && has(Step::full, Step::part)) vote(last, "filled");
    if (direction == "right" && std::ranges::find(steps, Step::blanks) != steps.end()) vote(last, "with blank strips");
    steps.clear();
    when.clear();
}

std::vector<Fact> BankMarch::finish() {
    endMarch();
    return {left, right, last};
}

} // namespace lumbrine::blackbox
