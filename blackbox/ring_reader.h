// Finds the whole records in the bytes of a recording, whatever else is in them: a file that was cut anywhere, that has
// wrong bytes anywhere, or that is written at this moment.
#pragma once

#include "base/bytes.h"
#include "blackbox/format.h"
#include "blackbox/ring_header.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace lumbrine::blackbox {

struct Record {
    std::uint64_t position; // orders records: that of a later one is greater
    std::int64_t time;      // nanoseconds of a steady clock that may begin again with the computer
    std::uint32_t thread;   // the same number: the same thread, as long as it lived
    Kind kind;
    std::uint8_t channel;
    ByteView payload; // into the file
};

struct RingReading {
    RingHeader header;
    std::vector<Record> records; // oldest first
    std::uint64_t end = 0;       // the position behind the newest: where a writer goes on
};

// Absent when the file is no recording. Otherwise the records that are whole; none may be. The views last as long as
// `file`, which must not change meanwhile.
std::optional<RingReading> readRing(ByteView file);

} // namespace lumbrine::blackbox
