// Prints records as lines, each once, as they are there: `lumbrine-blackbox show`.
#pragma once

#include "tools/blackbox/record_words.h"
#include "tools/blackbox/timed_records.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>

namespace lumbrine::blackbox {

struct ShowFilter {
    std::optional<std::int64_t> from = {}; // nanoseconds since 1970 (UTC)
    std::optional<std::int64_t> to = {};
    std::optional<int> strip = {}; // from 0: only what is about this strip
    std::set<Topic> topics = {};   // empty for all
};

class Show {
public:
    Show(ShowFilter wanted, std::function<void(const std::string& line)> output)
        : filter(std::move(wanted)), print(std::move(output)) {}

    // The records of one look at the recording; those that were printed before are passed over. With `isLive`, a place
    // without a record holds up what follows until the next look: its writer may be at work.
    void add(const std::vector<TimedRecord>& records, bool isLive);

private:
    bool isWanted(const TimedRecord& record, const RecordWords& words) const;
    void tell(const TimedRecord& record);
    void tellClock(const TimedRecord& record);

    const ShowFilter filter;
    const std::function<void(const std::string&)> print;
    RecordTeller teller;
    std::uint64_t next = 0; // the position of the record to be printed next
    bool isBegun = false;
    std::optional<std::uint64_t> hole; // where the last look ended
    std::string day;
    std::optional<std::int64_t> lead; // of the wall clock over the recording's
};

// A time of day: "14:03" or "14:03:59" of the day of `newest`, or with the day in front, "2026-11-23 14:03". Absent for
// any other text.
std::optional<std::int64_t> wallTimeOf(const std::string& text, std::int64_t newest);

} // namespace lumbrine::blackbox
