// One connection of the virtual streams, both ends.
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
        Bytes bytes; // none: the orderly end
        std::size_t received = 0;
    };

    explicit VirtualConnection(VirtualRuntime& rt) : runtime(rt), changed(rt.makeSignal()) {}

    // To the near end, after all that is on its way.
    void arrive(Bytes bytes, Duration delay) {
        if (finished || wasReset) return;
        finished = bytes.empty();
        const TimePoint earliest = arrivals.empty() ? runtime.now() : arrivals.back().due;
        arrivals.push_back({std::max(runtime.now() + delay, earliest), std::move(bytes)});
        changed->notifyAll();
    }

    VirtualRuntime& runtime;
    std::unique_ptr<VirtualRuntime::Signal> changed;
    std::unique_ptr<StreamPeer> peer; // there once it is connected
    std::deque<Arrival> arrivals;
    bool finished = false;
    bool wasReset = false;
    bool reading = true;
    Bytes unread; // sent while the far end does not read

    std::optional<Duration> receiveTimeout;
    std::optional<Duration> sendTimeout;
};

} // namespace lumbrine
