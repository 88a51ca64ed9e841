#include "model/testing/tape.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace lumbrine {

namespace {

// "60ms", "16.667ms"
std::string milliseconds(Duration duration) {
    char text[32];
    const double value = inSeconds(duration) * 1000;
    std::snprintf(text, sizeof text, duration.count() % 1'000'000 == 0 ? "%.0fms" : "%.3fms", value);
    return text;
}

} // namespace

std::string hex(ByteView bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        char pair[4];
        std::snprintf(pair, sizeof pair, "%02X", byte);
        text += (text.empty() ? "" : " ") + std::string(pair);
    }
    return text;
}

std::vector<std::string> Tape::take(TimePoint origin) {
    return takeStarting(origin, {});
}

std::vector<std::string> Tape::takeBytes() {
    std::vector<std::string> lines;
    for (const Heard& one : std::exchange(heard, {}))
        lines.push_back(hex(one.bytes));
    return lines;
}

std::vector<std::string> Tape::takeStarting(TimePoint origin, const Bytes& start) {
    std::vector<std::string> lines;
    for (const Heard& one : std::exchange(heard, {})) {
        const bool wanted =
            one.bytes.size() >= start.size() && std::equal(start.begin(), start.end(), one.bytes.begin());
        if (wanted) lines.push_back(milliseconds(one.at - origin) + " " + hex(one.bytes));
    }
    return lines;
}

} // namespace lumbrine
