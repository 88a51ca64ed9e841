// How far a replay does what was recorded, where it is not the same to the nanosecond: a recording of a program in real
// time shows neither how long its threads took nor in which order they went on.
#pragma once

#include "platform/api/time.h"
#include "tools/replay/replay.h"

#include <cstddef>
#include <string>
#include <vector>

namespace lumbrine::blackbox {

// Of what the receiver sends in one direction.
struct Agreement {
    std::string lane; // "MIDI of surface 1", "datagrams to 192.168.1.20:50000", "scripting", "log"
    std::size_t recorded = 0;
    std::size_t replayed = 0;
    std::size_t same = 0;            // the same bytes in the same order
    Duration latest{};               // the largest difference between their times
    const Record* missing = nullptr; // the first that was recorded and not replayed; a view into the replay
};

// Without meters, which follow the clock and not the inputs.
std::vector<Agreement> agreements(const Replay& replay);

} // namespace lumbrine::blackbox
