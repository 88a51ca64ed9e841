// The host's side of one surface's MIDI ports: a plain JACK client, connected to the receiver's two ports.
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

// The servers of tests are not realtime and wait long for a client, so a lock in the process callback does no harm.
class HostPorts {
public:
    struct Event {
        std::chrono::steady_clock::time_point at;
        Bytes bytes;
    };

    // Returns when it is connected to both ports of that name; throws std::runtime_error when it cannot be.
    explicit HostPorts(const std::string& portName);
    ~HostPorts();
    HostPorts(const HostPorts&) = delete;
    HostPorts& operator=(const HostPorts&) = delete;

    // One event, in the next cycle that has room for it; the order is kept.
    void send(ByteView event);

    // In each cycle asks `next` for events and sends them until the cycle has no room left; empty ends that.
    void flood(std::function<Bytes()> next);

    // How many bytes it has sent so.
    std::uint64_t flooded() const { return floodedBytes; }

    // What has come in so far.
    std::vector<Event> events() const;
    void clear();

    // Waits for these events, one right after the other, somewhere in what has come in; what stands there, or nothing
    // when they do not come.
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
