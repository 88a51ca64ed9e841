// Plays a recording to the receiver's own model in virtual time, and records that in the same way.
#pragma once

#include "blackbox/ring_reader.h"

#include <cstddef>
#include <expected>
#include <string>
#include <vector>

namespace lumbrine::blackbox {

struct Replay {
    std::vector<Record> recorded; // of one program, without anchors; views into what was replayed
    std::vector<Record> replayed; // likewise; views into `file`
    Bytes file;
    std::size_t equal = 0; // so many records are the same from the beginning: kind, channel, time and payload

    bool isEqual() const { return equal == recorded.size() && equal == replayed.size(); }
};

// Of the newest program whose beginning is there. `ring` is a whole recording, and outlives the result. Otherwise why
// it cannot be replayed.
std::expected<Replay, std::string> replay(ByteView ring);
std::expected<Replay, std::string> replay(Bytes&& ring) = delete;

} // namespace lumbrine::blackbox
