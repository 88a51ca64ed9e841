// A client of the receiver: one socket, a hello that asks for the full state, signs of life that keep the receiver from
// dropping the client, and a picture of the session built from the messages.
//
// Main thread only. A separate thread reads the socket, parses the datagrams and queues a limited number of messages
// for the main thread. Further messages are dropped, as a network may drop any datagram.
#pragma once

#include "platform/api/datagram_sockets.h"
#include "platform/api/runtime.h"
#include "remote/held_faders.h"
#include "remote/receiver_message.h"
#include "remote/session_picture.h"
#include "seal/client_seal.h"

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
    // Identifies this device, so that it stays in control when its address changes. 0 is the same as none.
    std::optional<std::uint64_t> token;

    // With both, the client seals as soon as its receiver shows that it understands, and from then on ignores what is
    // not sealed. Without a token it chooses one at random. `secrets` outlives the client.
    std::optional<PairingKey> key = std::nullopt;
    Secrets* secrets = nullptr;

    // The longest time without a datagram to the receiver. After 5 s the receiver reports the client as gone, and after
    // 6 s another client may take control.
    Duration keepAlive = seconds(1.0);

    // How often a client in control asks for the full state again. This repairs losses in the network.
    Duration refresh = seconds(10.0);

    // When the receiver is silent for this long, the state becomes `lost`. A receiver with a client sends at least
    // every 1.2 s.
    Duration silence = seconds(4.0);
};

class RemoteClient {
public:
    RemoteClient(Runtime& runtime, DatagramSockets& sockets, RemoteOptions options = {});

    // Releases the held faders and closes the socket.
    ~RemoteClient();
    RemoteClient(const RemoteClient&) = delete;
    RemoteClient& operator=(const RemoteClient&) = delete;

    // Called for each message, after it has been applied to the picture. Neither this nor `onState` may destroy the
    // client or call `connect`.
    std::function<void(const ReceiverMessage&)> onMessage;

    // Called after every change of state. When a receiver answers for the first time, or again after it was lost, the
    // picture starts empty.
    std::function<void(LinkState)> onState;

    // Sends hello to this receiver until it answers. A later call switches to another receiver. Returns false, and
    // changes nothing, when the host is unknown or no socket can be opened.
    bool connect(const std::string& host, std::uint16_t port);

    // Sends any datagram. Does nothing before `connect`. Errors are ignored, like losses in the network.
    void send(ByteView datagram);

    // A fader is held from `touch` to `release`; touches and releases are repeated as HeldFaders says, and the
    // destructor releases held faders. Once another client is in control, or the receiver is lost, no fader is held.
    // `move` changes the picture at once, because the receiver does not echo the moves of a held fader.
    void touch(Strip strip);
    void move(Strip strip, FaderValue value);
    void release(Strip strip);

    // Takes control from another client. Repeated with each hello for as long as the receiver refuses this client, but
    // not after it was in control, and not once the receiver is lost.
    void takeOver();

    // Asks for the full state. The client also does this by itself: see RemoteOptions::refresh.
    void askForEverything() { sayHello(); }

    LinkState state() const { return linkState; }
    const SessionPicture& picture() const { return sessionPicture; }

    // The number of datagrams from the receiver that were not valid messages, and the number of messages dropped
    // because the queue was full.
    std::uint64_t malformedCount() const;
    std::uint64_t droppedCount() const;

    // The receiver's datagrams since the session began; absent while nothing is sealed.
    struct Loss {
        std::uint32_t received = 0;
        std::uint32_t lost = 0;
    };
    std::optional<Loss> loss();

private:
    class Inbox;

    bool openSocket();
    void receiveLoop(const std::shared_ptr<Inbox>& letters);
    std::optional<ByteView> opened(ByteView datagram, Bytes& reply);
    void drain();
    void take(const ReceiverMessage& message);
    void enter(LinkState state);
    void answered();
    void lose();
    void sayHello();
    void tick();

    Runtime& runtime;
    DatagramSockets& sockets;
    const RemoteOptions options;
    std::optional<std::uint64_t> token;
    int fd = -1;
    std::optional<PeerAddress> receiver;
    Mutex sealing;
    std::unique_ptr<seal::ClientSeal> seal LUMBRINE_GUARDED_BY(sealing); // null without a key
    std::shared_ptr<Inbox> inbox;
    std::unique_ptr<Thread> receiveThread;
    std::unique_ptr<RepeatingTimer> timer;

    LinkState linkState = LinkState::searching;
    SessionPicture sessionPicture;
    HeldFaders faders{runtime, [this](ByteView datagram) { send(datagram); }};
    bool wantsControl = false; // since `takeOver`
    TimePoint lastHeard = distantPast;
    TimePoint lastSent = distantPast;
    TimePoint lastHello = distantPast;
};

} // namespace lumbrine::remote
