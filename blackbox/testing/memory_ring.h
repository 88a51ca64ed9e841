// A recording in plain memory, for tests.
#pragma once

#include "blackbox/ring_reader.h"
#include "blackbox/ring_writer.h"

#include <string>
#include <string_view>
#include <vector>

namespace lumbrine::blackbox {

class MemoryRing {
public:
    static constexpr std::uint64_t salt = 0x0123456789ABCDEF;

    explicit MemoryRing(std::size_t ringSize = leastRing)
        : words((headerSize + ringSize) / wordSize), writer(std::span(words).subspan(headerSize / wordSize), salt, 0) {
        writeHeader({ringSize, salt}, std::span(words).first(headerSize / wordSize));
    }

    // As a file would have them.
    Bytes bytes() const {
        const ByteView view{reinterpret_cast<const std::uint8_t*>(words.data()), words.size() * wordSize};
        return {view.begin(), view.end()};
    }

    void log(std::string_view line) { writer.write({++time, 7}, Kind::log, 0, {textBytes(line)}); }

private:
    std::vector<std::uint64_t> words;
    std::int64_t time = 0;

public:
    RingWriter writer;
};

inline std::string textOf(const Record& record) {
    return {record.payload.begin(), record.payload.end()};
}

// The payloads of a file's records as text; of no recording, none.
inline std::vector<std::string> textsOf(ByteView file) {
    std::vector<std::string> texts;
    if (const auto reading = readRing(file))
        for (const Record& record : reading->records)
            texts.push_back(textOf(record));
    return texts;
}

} // namespace lumbrine::blackbox
