// A recorder into memory, and what it has recorded, for tests of the recorded back ends.
#pragma once

#include "blackbox/testing/memory_ring.h"
#include "platform/recorded/recorder.h"
#include "platform/virtual/still_runtime.h"

#include <cstring>
#include <string>
#include <vector>

namespace lumbrine {

struct RecordingBench {
    struct Entry {
        blackbox::Kind kind;
        int channel;
        std::int64_t time;
        Bytes payload;

        template <typename Head>
        Head head() const {
            Head value{};
            EXPECT_GE(payload.size(), sizeof value);
            if (payload.size() >= sizeof value) std::memcpy(&value, payload.data(), sizeof value);
            return value;
        }

        template <typename Head>
        Bytes behind() const {
            return {payload.begin() + sizeof(Head), payload.end()};
        }

        template <typename Head>
        std::string textBehind() const {
            return {payload.begin() + sizeof(Head), payload.end()};
        }

        std::string text() const { return {payload.begin(), payload.end()}; }
    };

    std::vector<Entry> entries() const {
        const Bytes file = ring.bytes();
        std::vector<Entry> all;
        for (const blackbox::Record& record : blackbox::readRing(file)->records)
            all.push_back({record.kind, record.channel, record.time, {record.payload.begin(), record.payload.end()}});
        return all;
    }

    Entry only() const {
        const auto all = entries();
        EXPECT_EQ(all.size(), 1U);
        return all.empty() ? Entry{} : all.front();
    }

    StillRuntime runtime;
    blackbox::MemoryRing ring;
    Recorder recorder{runtime, ring.writer};
};

} // namespace lumbrine
