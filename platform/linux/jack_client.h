// A JACK client with MIDI ports. When the server comes back after it was gone, client and ports are there again under
// the names they had.
//
// The realtime thread only moves bytes between JACK's buffers and the ports' rings. What has come in is read on one
// receive thread of the client's, as CoreMIDI does it: decoding, logging and locks stay out of the realtime thread, and
// nobody wakes up while nothing comes in.
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

    // Called on the server thread with the open client after it was opened and whenever ports or connections at the
    // server have changed, and with null when it was closed; false when it wants to be called again soon.
    using Reviewer = std::function<bool(jack_client_t*)>;

    // Ends the client: ports are gone, and no reader runs any more. Where the server does not let go of the client in
    // time (JackServer::remove), it is left to the server, which may call the reviewer once more.
    struct Ending {
        void operator()(JackClient* client) const;
    };
    using Pointer = std::unique_ptr<JackClient, Ending>;

    // JACK makes the name another one when it is taken ("Lumbrine-01"). The server outlives the client.
    static Pointer make(Runtime& rt, JackServer& jackServer, std::string clientName, Reviewer changeReviewer = {});

    // Goes to the server: 0, or JACK's status when it cannot now; it goes on trying in any case. Once.
    MIDIStatus start();

    // Null when JACK refuses the name or does not answer, or there are too many. Before `start` or after; one thread at
    // a time. The port lives as long as the client.
    JackOutput* addOutput(const std::string& portName);
    JackInput* addInput(const std::string& portName, std::function<void(ByteView event)> read);

    // Events that found no room in one of the ports, ever. Any thread.
    std::uint64_t dropped() const;

    MIDIStatus open() override;
    void close() override;
    bool lost() const override { return !live; }
    bool review() override { return !reviewer || reviewer(client); }

private:
    JackClient(Runtime& rt, JackServer& jackServer, std::string clientName, Reviewer changeReviewer);
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

    jack_client_t* client = nullptr; // of the server thread
    std::atomic<bool> live{false};   // open, and the server has not died since

    // Ports only ever come; the count makes a new one visible to the other threads.
    std::array<std::shared_ptr<JackPort>, maxPorts> ports;
    std::atomic<std::size_t> portCount{0};

    Bell arrivals;
    std::atomic<bool> stopping{false};
    std::unique_ptr<Thread> receiver; // with the first input
};

} // namespace lumbrine
