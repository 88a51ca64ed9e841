// MIDI ports of a JACK client. Their names and their queues stay when the server goes; only what JACK knows of them is
// made anew.
#pragma once

#include "base/bytes.h"
#include "platform/api/runtime.h"
#include "platform/posix/event_ring.h"

#include <jack/types.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace lumbrine {

// How many bytes may wait in one port for the realtime thread or for the receive thread: seconds of the densest HUI
// traffic.
inline constexpr std::size_t jackPortCapacity = std::size_t{256} * 1024;

class JackPort {
public:
    JackPort(std::string portName, unsigned long portFlags) : name(std::move(portName)), flags(portFlags) {}
    virtual ~JackPort() = default;
    JackPort(const JackPort&) = delete;
    JackPort& operator=(const JackPort&) = delete;

    // Makes the port known to JACK; false when JACK refuses. While no process callback sees the port.
    bool registerWith(jack_client_t* client);

    // The realtime thread's part of one cycle: neither waits nor allocates. True when there is something to deliver.
    virtual bool process(jack_nframes_t frames) = 0;

    // The receive thread's part: hands on what has come in. `scratch` holds the longest event.
    virtual void deliver(std::span<std::uint8_t> scratch) = 0;

    // The name with its client's ("Lumbrine:Lumbrine"), and whether it is connected to the port of that full name.
    // While the client is open, on its server thread.
    std::string fullName() const;
    bool isConnectedTo(const std::string& otherFullName) const;

    // Events that found no room, ever. Any thread.
    std::uint64_t dropped() const { return droppedCount; }

    const std::string name;

protected:
    // Whatever waits is from before the server died, and of no use any more.
    virtual void forget() = 0;

    jack_port_t* port = nullptr;
    std::atomic<std::uint64_t> droppedCount{0};

private:
    const unsigned long flags;
};

// From this program to whoever is connected.
class JackOutput final : public JackPort {
public:
    // `live` tells whether there is a server to send to.
    JackOutput(Runtime& runtime, std::string portName, const std::atomic<bool>& live);

    // One event. Any thread; in the order of the calls; never waits for JACK. Without a server it is gone; when there
    // is no room it is gone and counted.
    void send(ByteView event);

    bool process(jack_nframes_t frames) override;
    void deliver(std::span<std::uint8_t> /*scratch*/) override {}

private:
    void forget() override;

    const std::atomic<bool>& serverIsThere;
    Mutex mutex; // senders take turns at the ring's one end
    EventRing ring;
};

// From whoever is connected to this program.
class JackInput final : public JackPort {
public:
    // `eventReader` gets each event on the client's receive thread.
    JackInput(std::string portName, std::function<void(ByteView event)> eventReader);

    bool process(jack_nframes_t frames) override;
    void deliver(std::span<std::uint8_t> scratch) override;

private:
    void forget() override {}

    const std::function<void(ByteView)> read;
    EventRing ring;
};

} // namespace lumbrine
