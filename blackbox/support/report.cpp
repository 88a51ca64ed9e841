#include "blackbox/support/report.h"

#include "blackbox/ring_reader.h"
#include "blackbox/ring_writer.h"
#include "blackbox/support/redaction.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <sstream>
#include <vector>

namespace lumbrine::blackbox {

Bytes reportOf(ByteView ring, const std::string& diagnosis) {
    const auto reading = readRing(ring);
    if (!reading) return {};
    std::vector<std::uint64_t> words((headerSize + reading->header.capacity) / wordSize);
    std::memcpy(words.data(), ring.data(), std::min(ring.size(), words.size() * wordSize));
    const std::span<std::uint64_t> all(words);
    RingWriter writer(all.subspan(headerSize / wordSize), reading->header.salt, reading->end);
    const std::int64_t time = reading->records.empty() ? 0 : reading->records.back().time;
    std::istringstream lines(diagnosis);
    for (std::string line; std::getline(lines, line);)
        if (!line.empty()) writer.write({time, 0}, Kind::log, 0, {textBytes("check: "), textBytes(line)});
    return redacted({reinterpret_cast<const std::uint8_t*>(words.data()), words.size() * wordSize});
}

} // namespace lumbrine::blackbox
