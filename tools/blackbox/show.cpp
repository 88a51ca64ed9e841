#include "tools/blackbox/show.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <utility>

namespace lumbrine::blackbox {

namespace {

constexpr std::int64_t second = 1'000'000'000;
constexpr std::size_t dayLength = 10; // "2026-11-23"

std::string inSeconds(std::int64_t nanoseconds) {
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%.1f s", static_cast<double>(nanoseconds) / 1e9);
    return text.data();
}

} // namespace

void Show::add(const std::vector<TimedRecord>& records, bool isLive) {
    for (const TimedRecord& timed : records) {
        const std::uint64_t position = timed.record.position;
        if (isBegun && position < next) continue;
        if (isLive && isBegun && position > next && hole != next) {
            hole = next;
            return;
        }
        isBegun = true;
        next = position + paddedSize(timed.record.payload.size());
        tell(timed);
    }
}

bool Show::isWanted(const TimedRecord& timed, const RecordWords& words) const {
    if (words.text.empty()) return false;
    if (filter.from && timed.wall < *filter.from) return false;
    if (filter.to && timed.wall > *filter.to) return false;
    if (filter.strip && std::ranges::find(words.strips, *filter.strip) == words.strips.end()) return false;
    return filter.topics.empty() || filter.topics.contains(topicOf(timed.record.kind));
}

void Show::tell(const TimedRecord& timed) {
    const RecordWords words = teller.wordsOf(timed.record);
    if (timed.record.kind == Kind::anchor) tellClock(timed);
    if (timed.record.kind == Kind::anchor && timed.record.channel == 0) return; // it says only that time passes
    if (!isWanted(timed, words)) return;
    const std::string time = dateAndTime(timed.wall);
    if (const std::string today = time.substr(0, dayLength); std::exchange(day, today) != today) print("--- " + today);
    print(time.substr(std::min(dayLength + 1, time.size())) + "  " + words.text);
}

void Show::tellClock(const TimedRecord& timed) {
    const std::int64_t now = timed.wall - timed.record.time;
    const auto before = std::exchange(lead, now);
    if (!before || timed.record.channel == static_cast<std::uint8_t>(AnchorCause::programBegan)) return;
    const std::int64_t jump = now - *before;
    if (jump > second) print("--- the clock was set forward, or the computer slept: " + inSeconds(jump));
    if (jump < -second) print("--- the clock was set back: " + inSeconds(-jump));
}

std::optional<std::int64_t> wallTimeOf(const std::string& text, std::int64_t newest) {
    const bool hasDay = text.size() > dayLength;
    const std::string whole = hasDay ? text : dateAndTime(newest).substr(0, dayLength + 1) + text;
    for (const char* const form : {"%Y-%m-%d %H:%M:%S", "%Y-%m-%d %H:%M"}) {
        std::tm parts{};
        parts.tm_isdst = -1;
        const char* const end = ::strptime(whole.c_str(), form, &parts);
        if (end == nullptr || *end != '\0') continue;
        return static_cast<std::int64_t>(std::mktime(&parts)) * second;
    }
    return std::nullopt;
}

} // namespace lumbrine::blackbox
