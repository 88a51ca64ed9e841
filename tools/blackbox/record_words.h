// Records as lines of text.
#pragma once

#include "tools/blackbox/hui_words.h"
#include "tools/blackbox/timed_records.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine::blackbox {

// What --kind chooses from.
enum class Topic : std::uint8_t { datagrams, midi, scripting, screen, log, system };
inline constexpr std::array<std::string_view, 6> topicNames{"datagrams", "midi", "scripting",
                                                            "screen",    "log",  "system"};

Topic topicOf(Kind kind);

struct RecordWords {
    std::string text;             // printable and one line; may be empty
    std::vector<int> strips = {}; // that it is about, from 0
};

// Reads the records of one recording in their order, since a MIDI message may depend on those before it.
class RecordTeller {
public:
    RecordWords wordsOf(const Record& record);

private:
    RecordWords midi(const Record& record, Direction direction, ByteView packet);

    HUIWords hui;
};

// "192.168.1.20", "fe80:0:0:0:0:0:0:1"
std::string hostText(const NumericAddress& address);

// "192.168.1.20:50000", "[fe80::1]:50000"
std::string addressText(const NumericAddress& address);

} // namespace lumbrine::blackbox
