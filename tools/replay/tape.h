// What a replay plays from: the records of one program, and the clock that they are played by.
#pragma once

#include "blackbox/ring_reader.h"
#include "platform/virtual/virtual_runtime.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace lumbrine::blackbox {

// Some of the records, each taken once, in their order.
class Lane {
public:
    using Wanted = std::function<bool(const Record& record)>;

    // The records outlive it.
    Lane(const std::vector<Record>& all, const Wanted& wanted) {
        for (const Record& record : all)
            if (wanted(record)) records.push_back(&record);
    }

    // Null at the end.
    const Record* front() const { return next < records.size() ? records[next] : nullptr; }
    const Record* take() { return next < records.size() ? records[next++] : nullptr; }

private:
    std::vector<const Record*> records;
    std::size_t next = 0;
};

// The times of the recording in virtual time. Any thread but the main one.
class TapeClock {
public:
    // The runtime outlives it.
    explicit TapeClock(VirtualRuntime& virtualTime) : runtime(virtualTime), ending(runtime.makeSignal()) {}

    // Returns when everything that came before the record has had its effect. False when the replay ends first.
    bool waitFor(const Record& record) {
        const TimePoint at{Duration{record.time}};
        while (!ended && runtime.now() < at)
            ending->wait("its time in the recording", at);
        if (!ended) runtime.rest(record.position);
        return !ended;
    }

    // Like waitFor, for what was answered at once where the recording shows no delay.
    bool answerAt(const Record& record) {
        return runtime.now() < TimePoint{Duration{record.time}} ? waitFor(record) : !ended;
    }

    void waitForEnd() {
        while (!ended && ending->wait("the end of the replay", std::nullopt)) {
        }
    }

    // Every wait returns, now and from now on. Main thread.
    void end() {
        ended = true;
        ending->notifyAll();
    }

private:
    VirtualRuntime& runtime;
    const std::unique_ptr<VirtualRuntime::Signal> ending;
    bool ended = false;
};

} // namespace lumbrine::blackbox
