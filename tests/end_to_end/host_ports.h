// For tests: the host's side of the MIDI ports of one surface, a plain JACK client connected to the receiver's two
// ports.
#pragma once

#include "base/bytes.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

struct _jack_client;
struct _jack_port;

namespace lumbrine::end_to_end {

// The JACK servers of tests are not realtime and wait long for a client, so a lock in the process callback is harmless.
class HostPorts {
public:
    struct Event {
        std::chrono::steady_clock::time_point at;
        Bytes bytes;
    };

    // Returns when it is connected to both ports of this name; throws std::runtime_error when that fails.
    explicit HostPorts(const std::string& portName);
    ~HostPorts();
    HostPorts(const HostPorts&) = delete;
    HostPorts& operator=(const HostPorts&) = delete;

    // Sends one event in the next cycle with room for it. Events keep their order.
    void send(ByteView event);

    // Fills each cycle with events from `next`, as many as fit. An empty `next` stops the flood.
    void flood(std::function<Bytes()> next);

    // The number of bytes sent by `flood`.
    std::uint64_t flooded() const { return floodedBytes; }

    // The events received so far.
    std::vector<Event> events() const;
    void clear();

    // Waits until these events have been received directly after one another. Returns them; empty when they do not
    // arrive.
    std::vector<Event> waitFor(const std::vector<Bytes>& sequence) const;
    bool hears(const std::vector<Bytes>& sequence) const { return !waitFor(sequence).empty(); }

private:
    static int process(std::uint32_t frames, void* self);
    void take(void* buffer);
    void give(void* buffer);
    bool connectTo(const std::string& portName);
    bool letCyclesPass();

    _jack_client* client = nullptr;
    _jack_port* input = nullptr;
    _jack_port* output = nullptr;

    std::atomic<int> cycles{0};
    mutable std::mutex mutex;
    std::deque<Bytes> outgoing;
    std::function<Bytes()> source;
    std::atomic<std::uint64_t> floodedBytes{0};
    std::vector<Event> received;
};

} // namespace lumbrine::end_to_end
