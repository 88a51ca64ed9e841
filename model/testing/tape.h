// What was heard at one end of a wire, as lines that a test can be compared with: "60ms B0 0F 02".
#pragma once

#include "base/bytes.h"
#include "platform/api/time.h"

#include <string>
#include <vector>

namespace lumbrine {

// "B0 0F 02"
std::string hex(ByteView bytes);

class Tape {
public:
    void record(TimePoint now, ByteView bytes) { heard.push_back({now, Bytes(bytes.begin(), bytes.end())}); }

    // Everything since the last call, with the time since `origin`.
    std::vector<std::string> take(TimePoint origin);

    // The same without times.
    std::vector<std::string> takeBytes();

    // Only what begins with these bytes; the rest is forgotten.
    std::vector<std::string> takeStarting(TimePoint origin, const Bytes& start);

    void clear() { heard.clear(); }

private:
    struct Heard {
        TimePoint at;
        Bytes bytes;
    };
    std::vector<Heard> heard;
};

} // namespace lumbrine
