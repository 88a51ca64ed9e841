// A JACK client with MIDI ports. After a restart of the server, the client and its ports reappear under their names.
//
// The realtime thread only moves bytes between JACK's buffers and the rings of the ports. Incoming events are read on
// one receive thread for each client, as in CoreMIDI. This keeps decoding, logging and locks out of the realtime
// thread. The receive thread sleeps while nothing arrives.
#pragma once

#include "platform/api/midi_services.h"
#include "platform/linux/jack_ports.h"
#include "platform/linux/jack_server.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace lumbrine {

class JackClient final : public JackServer::Client {
public:
    static constexpr std::size_t maxPorts = 16;
    static constexpr Duration lastCyclesTime = seconds(0.1);

    // Called on the server thread: with the open client after opening and whenever ports or connections of the server
    // have changed, and with null after closing. Returns false to be called again soon.
    using Reviewer = std::function<bool(jack_client_t*)>;

    // Ends the client: waits until the server has taken what was sent, but no longer than `lastCyclesTime`; removes the
    // ports and waits for their readers. When the server thread does not close it in time (JackServer::remove), the
    // object stays alive until it does, and the reviewer may be called once more.
    struct Ending {
        void operator()(JackClient* client) const;
    };
    using Pointer = std::unique_ptr<JackClient, Ending>;

    // When another client has the name, JACK changes it ("Lumbrine-01"). The server must outlive the client.
    static Pointer make(Runtime& rt, JackServer& jackServer, std::string clientName, Reviewer changeReviewer = {});

    // Connects. Returns 0, or JACK's status if no server answers; keeps retrying in the background either way. Call
    // once.
    MIDIStatus start();

    // Adds a port, before or after `start`. Null when JACK refuses the name or does not answer, and when there are
    // maxPorts already. The port lives as long as the client. One thread at a time.
    JackOutput* addOutput(const std::string& portName);
    JackInput* addInput(const std::string& portName, std::function<void(ByteView event)> read,
                        std::function<void()> isBack = {});

    // The number of events that were lost because a ring was full, in all ports since the start. Any thread.
    std::uint64_t dropped() const;

    MIDIStatus open() override;
    void close() override;
    bool lost() const override { return !live; }
    std::uint64_t cycles() const override { return cycleCount; }
    void askServer() override;
    bool review() override { return !reviewer || reviewer(client); }

private:
    JackClient(Runtime& runtime, JackServer& server, std::string name, Reviewer reviewer);
    ~JackClient() override = default;

    static int process(jack_nframes_t frames, void* self);

    void setCallbacks();
    bool add(std::shared_ptr<JackPort> port);
    void receive();

    Runtime& runtime;
    JackServer& server;
    const std::string name;
    const Reviewer reviewer;
    bool started = false;

    jack_client_t* client = nullptr; // server thread only
    std::atomic<bool> live{false};   // open, and the server has not shut down since
    std::atomic<std::uint64_t> cycleCount{0};

    // Ports are never removed. Storing the count publishes a new port to the other threads.
    std::array<std::shared_ptr<JackPort>, maxPorts> ports;
    std::atomic<std::size_t> portCount{0};

    std::atomic<bool> sendingLast{false};
    Bell lastSent; // rung in a cycle that finds nothing to send, while sendingLast

    Bell arrivals;
    std::atomic<bool> stopping{false};
    std::unique_ptr<Thread> receiver; // started with the first input
};

} // namespace lumbrine
