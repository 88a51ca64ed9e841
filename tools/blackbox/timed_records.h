// The records of a recording with their times of day.
#pragma once

#include "blackbox/ring_reader.h"

#include <cstdint>
#include <string>
#include <vector>

namespace lumbrine::blackbox {

struct TimedRecord {
    Record record;
    std::int64_t wall; // nanoseconds since 1970 (UTC)
};

// In the order of the recording. The anchor before a record tells its time of day; before the first, the first one
// does. Without any anchor the times count from 1970.
std::vector<TimedRecord> timed(const std::vector<Record>& records);

// "2026-11-23 14:03:59.012345", in this computer's time zone.
std::string dateAndTime(std::int64_t wall);

} // namespace lumbrine::blackbox
