// MIDI ports of a JACK client. When the server restarts, a port keeps its name and its ring and is registered again.
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

// The number of bytes that may wait in one port for the realtime thread or the receive thread: enough for seconds of
// the densest HUI traffic.
inline constexpr std::size_t jackPortCapacity = std::size_t{256} * 1024;

class JackPort {
public:
    JackPort(std::string name, unsigned long flags) : name(std::move(name)), flags(flags) {}
    virtual ~JackPort() = default;
    JackPort(const JackPort&) = delete;
    JackPort& operator=(const JackPort&) = delete;

    // Registers the port with JACK; false when JACK refuses. Must not run while a process callback can see the port.
    bool registerWith(jack_client_t* client);

    // The realtime thread's part of one cycle. Neither waits nor allocates. True when there are events to deliver.
    virtual bool process(jack_nframes_t frames) = 0;

    // Whether events wait to be sent. On the realtime thread.
    virtual bool hasWaiting() const { return false; }

    // The receive thread's part: passes the events that have arrived to the reader. `scratch` has room for the longest.
    virtual void deliver(std::span<std::uint8_t> scratch) = 0;

    // Whether another program's port was connected in the last cycle. Any thread.
    bool isConnected() const { return connected; }

    // The name with that of its client ("Lumbrine:Lumbrine"), and whether the port is connected to the other one. Only
    // while the client is open, and on the server thread.
    std::string fullName() const;
    bool isConnectedTo(const std::string& otherFullName) const;

    // The number of events that were lost because the ring was full, since the start. Any thread.
    std::uint64_t dropped() const { return droppedCount; }

    const std::string name;

protected:
    // Removes the waiting events: they are from before the server's restart, and outdated.
    virtual void forget() = 0;

    // On the realtime thread, in each cycle.
    void lookAtConnections();

    jack_port_t* port = nullptr;
    std::atomic<std::uint64_t> droppedCount{0};

private:
    std::atomic<bool> connected{false};
    const unsigned long flags;
};

// Sends from this program to the connected ports.
class JackOutput final : public JackPort {
public:
    // `serverIsThere` is true while there is a server.
    JackOutput(Runtime& runtime, std::string portName, const std::atomic<bool>& serverIsThere);

    // Sends one event. Events leave in the order of the calls. Never waits for JACK: without a server the event is
    // dropped; when the ring is full it is dropped and counted, and the result is false. Any thread.
    bool send(ByteView event);

    bool process(jack_nframes_t frames) override;
    bool hasWaiting() const override { return ring.nextSize() != 0; }
    void deliver(std::span<std::uint8_t> /*scratch*/) override {}

private:
    void forget() override;

    const std::atomic<bool>& serverIsThere;
    Mutex mutex; // the ring allows one writer at a time
    EventRing ring;
};

// Receives from the connected ports.
class JackInput final : public JackPort {
public:
    // Calls `read` with each event, and `isBack` before the first event after a restart of the server, both on the
    // client's receive thread.
    JackInput(std::string portName, std::function<void(ByteView event)> read, std::function<void()> isBack);

    bool process(jack_nframes_t frames) override;
    void deliver(std::span<std::uint8_t> scratch) override;

private:
    void forget() override;

    const std::function<void(ByteView)> read;
    const std::function<void()> isBack;
    bool registeredBefore = false; // server thread only
    std::atomic<bool> returned{false};
    EventRing ring;
};

} // namespace lumbrine
