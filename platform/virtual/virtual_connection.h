// One connection of the virtual streams: the state of both ends.
#pragma once

#include "base/bytes.h"
#include "platform/virtual/virtual_runtime.h"
#include "platform/virtual/virtual_streams.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <optional>

namespace lumbrine {

struct VirtualConnection {
    struct Arrival {
        TimePoint due;
        Bytes bytes; // empty for the orderly end of the connection
        std::size_t received = 0;
    };

    explicit VirtualConnection(VirtualRuntime& runtime) : runtime(runtime), changed(runtime.makeSignal()) {}

    // Schedules bytes for the near end, never before those that are already on their way.
    void arrive(Bytes bytes, Duration delay) {
        if (finished || wasReset) return;
        finished = bytes.empty();
        const TimePoint earliest = arrivals.empty() ? runtime.now() : arrivals.back().due;
        arrivals.push_back({std::max(runtime.now() + delay, earliest), std::move(bytes)});
        changed->notifyAll();
    }

    VirtualRuntime& runtime;
    std::unique_ptr<VirtualRuntime::Signal> changed;
    std::unique_ptr<StreamPeer> peer; // null until the connection is accepted
    std::deque<Arrival> arrivals;
    bool finished = false;
    bool wasReset = false;
    bool reading = true;
    Bytes unread; // sent by the near end while the far end does not read

    std::optional<Duration> receiveTimeout;
    std::optional<Duration> sendTimeout;
};

} // namespace lumbrine
