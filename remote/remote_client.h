// A client of the receiver: one socket, a hello that asks for everything, signs of life that keep the receiver from
// giving the client up, and the picture that the messages paint.
//
// Everything here is for the main thread. Only the socket is read on a thread of its own, which parses what comes and
// queues a bounded number of messages for the main thread; more are dropped, as a network may drop any datagram.
#pragma once

#include "platform/api/datagram_sockets.h"
#include "platform/api/runtime.h"
#include "remote/receiver_message.h"
#include "remote/session_picture.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace lumbrine::remote {

enum class LinkState {
    searching, // no receiver has answered yet
    connected, // this client is in control
    busy,      // another client is in control
    takenOver, // another client is in control now, and this one was before
    lost       // the receiver went silent
};

struct RemoteOptions {
    // Names this device, so that it stays in control when its address changes. 0 names none.
    std::optional<std::uint64_t> token;

    // The longest the client stays silent. The receiver counts it as gone after 5 s and frees its place after 6 s.
    Duration keepAlive = seconds(1.0);

    // How often a client that is in control asks for everything again, which brings back what the network lost.
    Duration refresh = seconds(10.0);

    // A receiver that has a client talks at least every 1.2 s.
    Duration silence = seconds(4.0);
};

class RemoteClient {
public:
    RemoteClient(Runtime& rt, DatagramSockets& datagramSockets, RemoteOptions remoteOptions = {});

    // Releases the faders that are held and closes the socket.
    ~RemoteClient();
    RemoteClient(const RemoteClient&) = delete;
    RemoteClient& operator=(const RemoteClient&) = delete;

    // After the picture has taken the message in. Neither this nor `onState` may destroy the client or connect it anew.
    std::function<void(const ReceiverMessage&)> onMessage;

    // After every change of state; the picture is empty again when a receiver answers anew.
    std::function<void(LinkState)> onState;

    // Says hello to that receiver, and goes on doing so until it answers. Another call turns to another receiver. False
    // when the host is unknown or there is no socket to be had; nothing has changed then.
    bool connect(const std::string& host, std::uint16_t port);

    // Any datagram; nothing before `connect`. Errors are as if the network had lost it.
    void send(ByteView datagram);

    // A fader is held from `touch` to `release`, and what is held is released when the client goes away. The picture
    // follows `move` at once, because the receiver does not echo the moves of a held fader.
    void touch(Strip strip);
    void move(Strip strip, FaderValue value);
    void release(Strip strip);

    // Makes this client the one in control.
    void takeOver();

    // As happens by itself at the start and every now and then.
    void askForEverything() { sayHello(); }

    LinkState state() const { return linkState; }
    const SessionPicture& picture() const { return sessionPicture; }

    // Datagrams of the receiver's that were no message of the protocol, and messages that came faster than the main
    // thread took them.
    std::uint64_t malformedCount() const;
    std::uint64_t droppedCount() const;

private:
    class Inbox;

    bool openSocket();
    void receiveLoop(const std::shared_ptr<Inbox>& letters);
    void drain();
    void take(const ReceiverMessage& message);
    void enter(LinkState state);
    void answered();
    void sayHello();
    void tick();

    Runtime& runtime;
    DatagramSockets& sockets;
    const RemoteOptions options;
    int fd = -1;
    std::optional<PeerAddress> receiver;
    std::shared_ptr<Inbox> inbox;
    std::unique_ptr<Thread> receiveThread;
    std::unique_ptr<RepeatingTimer> timer;

    LinkState linkState = LinkState::searching;
    SessionPicture sessionPicture;
    std::array<bool, stripCount> held{};
    TimePoint lastHeard = distantPast;
    TimePoint lastSent = distantPast;
    TimePoint lastHello = distantPast;
};

} // namespace lumbrine::remote
