#include "tools/blackbox/timed_records.h"

#include "blackbox/payload.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <optional>

namespace lumbrine::blackbox {

namespace {

std::optional<std::int64_t> leadOf(const Record& record) {
    if (record.kind != Kind::anchor) return std::nullopt;
    const auto head = headOf<AnchorHead>(record);
    if (!head) return std::nullopt;
    // Unsigned, since a damaged file may hold any numbers.
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(head->wallTime) -
                                     static_cast<std::uint64_t>(record.time));
}

std::int64_t firstLead(const std::vector<Record>& records) {
    for (const Record& record : records)
        if (const auto lead = leadOf(record)) return *lead;
    return 0;
}

} // namespace

std::vector<TimedRecord> timed(const std::vector<Record>& records) {
    std::vector<TimedRecord> all;
    all.reserve(records.size());
    std::int64_t lead = firstLead(records);
    for (const Record& record : records) {
        lead = leadOf(record).value_or(lead);
        const auto wall = static_cast<std::uint64_t>(record.time) + static_cast<std::uint64_t>(lead);
        all.push_back({record, static_cast<std::int64_t>(wall)});
    }
    return all;
}

std::string dateAndTime(std::int64_t wall) {
    constexpr std::int64_t second = 1'000'000'000;
    const std::int64_t nanoseconds = (wall % second + second) % second;
    const std::time_t time = (wall - nanoseconds) / second;
    std::tm parts{};
    if (::localtime_r(&time, &parts) == nullptr) return "?";
    std::array<char, 64> text{};
    const std::size_t size = std::strftime(text.data(), text.size(), "%F %T", &parts);
    std::snprintf(text.data() + size, text.size() - size, ".%06d", static_cast<int>(nanoseconds / 1000));
    return text.data();
}

} // namespace lumbrine::blackbox
