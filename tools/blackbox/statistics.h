// What a recording says about speed and losses.
#pragma once

#include "tools/blackbox/timed_records.h"

#include <cstdint>
#include <string>
#include <vector>

namespace lumbrine::blackbox {

// Times in nanoseconds, in no order.
struct Statistics {
    std::vector<std::int64_t> toMIDI;       // from a fader move's datagram to the last MIDI packet that it caused
    std::vector<std::int64_t> toEcho;       // from a fader move's MIDI to the host's own value for that fader
    std::vector<std::int64_t> hostReaction; // from a bank key to the next text on a display
    std::vector<std::int64_t> pingGaps;     // between two pings of one surface
    long lostPings = 0;                     // gaps above 1.5 s, in seconds
    long autoKeys = 0;                      // presses of AUTO keys, with which the receiver asks for modes
    long unsentDatagrams = 0;
    long unsentMIDI = 0;
    std::vector<long> ofTopic; // records, by Topic
};

Statistics statisticsOf(const std::vector<TimedRecord>& records);

// As `lumbrine-blackbox stats` prints it.
std::string textOf(const Statistics& statistics, const std::vector<TimedRecord>& records);

} // namespace lumbrine::blackbox
