#include "remote/remote_client.h"

#include "base/big_endian.h"
#include "remote/command_builder.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace lumbrine::remote {
namespace {

constexpr std::size_t receiveBytes = 2048; // more than the largest datagram of a receiver
constexpr std::size_t maxQueued = 4096;    // the full state of a session with 1,000 tracks is about 1,200 messages

bool sameAddress(const PeerAddress& a, const PeerAddress& b) {
    return a.length == b.length && std::equal(a.storage.begin(), a.storage.begin() + a.length, b.storage.begin());
}

std::string nameOf(DatagramSockets& sockets, const PeerAddress& address) {
    std::string host;
    std::string port;
    sockets.name(address, host, port);
    return host + ":" + port;
}

} // namespace

// The queue from the receive thread to the main thread. Both own it.
class RemoteClient::Inbox {
public:
    explicit Inbox(Runtime& runtime) : mutex(runtime) {}

    // Sets the peer to listen to, and drops the messages of the previous one.
    void listenTo(const PeerAddress& address, std::string addressName) {
        const Lock lock(mutex);
        sender = address;
        senderName = std::move(addressName);
        messages.clear();
    }

    bool comesFromReceiver(DatagramSockets& resolver, const PeerAddress& from) {
        {
            const Lock lock(mutex);
            if (sameAddress(sender, from)) return true;
        }
        const std::string name = nameOf(resolver, from); // the same peer can come in a different outer form
        const Lock lock(mutex);
        return name == senderName;
    }

    // Returns true when the caller must post a `drain` to the main thread.
    bool put(std::optional<ReceiverMessage> message) {
        const Lock lock(mutex);
        if (!message) {
            ++malformed;
            return false;
        }
        if (messages.size() >= maxQueued) {
            ++dropped;
            return false;
        }
        messages.push_back(*std::move(message));
        return !std::exchange(drainAsked, true);
    }

    std::vector<ReceiverMessage> takeAll() {
        const Lock lock(mutex);
        drainAsked = false;
        return std::exchange(messages, {});
    }

    void end() {
        const Lock lock(mutex);
        ending = true;
    }
    bool ended() {
        const Lock lock(mutex);
        return ending;
    }
    std::uint64_t malformedCount() {
        const Lock lock(mutex);
        return malformed;
    }
    std::uint64_t droppedCount() {
        const Lock lock(mutex);
        return dropped;
    }

private:
    Mutex mutex;
    PeerAddress sender LUMBRINE_GUARDED_BY(mutex);
    std::string senderName LUMBRINE_GUARDED_BY(mutex);
    std::vector<ReceiverMessage> messages LUMBRINE_GUARDED_BY(mutex);
    bool drainAsked LUMBRINE_GUARDED_BY(mutex) = false;
    bool ending LUMBRINE_GUARDED_BY(mutex) = false;
    std::uint64_t malformed LUMBRINE_GUARDED_BY(mutex) = 0;
    std::uint64_t dropped LUMBRINE_GUARDED_BY(mutex) = 0;
};

RemoteClient::RemoteClient(Runtime& runtime, DatagramSockets& sockets, RemoteOptions options)
    : runtime(runtime), sockets(sockets), options(options), token(options.token), sealing(runtime),
      inbox(std::make_shared<Inbox>(runtime)) {
    if (!options.key || options.secrets == nullptr || token.value_or(0) != 0) return;
    std::array<std::uint8_t, 8> random{};
    options.secrets->fillRandom(random);
    token = readBigEndian64(random, 0) | 1; // 0 would be none
}

RemoteClient::~RemoteClient() {
    if (fd < 0) return;
    // Otherwise the receiver would hold the faders as touched until another client takes over.
    faders.releaseAll();
    timer.reset();
    inbox->end();
    sockets.shutDown(fd);
    receiveThread.reset();
    sockets.close(fd);
}

bool RemoteClient::connect(const std::string& host, std::uint16_t port) {
    if (!openSocket()) return false;
    PeerAddress address;
    if (!sockets.resolve(host, port, address)) return false;
    receiver = address;
    if (options.key && options.secrets != nullptr) {
        const Lock lock(sealing);
        seal = std::make_unique<seal::ClientSeal>(*options.secrets, *options.key);
    }
    inbox->listenTo(address, nameOf(sockets, address));
    faders.forget();
    wantsControl = false;
    sessionPicture = {};
    enter(LinkState::searching);
    sayHello();
    return true;
}

bool RemoteClient::openSocket() {
    if (fd >= 0) return true;
    const int opened = sockets.open();
    if (opened < 0) return false;
    sockets.setDualStack(opened);
    if (sockets.bind(opened, 0) < 0) {
        sockets.close(opened);
        return false;
    }
    fd = opened;
    receiveThread = runtime.startThread("remote receive", [this, letters = inbox] { receiveLoop(letters); });
    timer = runtime.repeatOnMain(options.keepAlive / 4, [this] { tick(); });
    return true;
}

// Runs on the receive thread. `this` stays valid, because the destructor waits for the thread.
void RemoteClient::receiveLoop(const std::shared_ptr<Inbox>& letters) {
    std::vector<std::uint8_t> buffer(receiveBytes);
    PeerAddress from;
    while (true) {
        const int size = sockets.receive(fd, buffer, from);
        if (letters->ended()) return;
        if (size < 0) {
            // An error may repeat at once, for example while the network is down; the pause keeps the thread from
            // spinning.
            runtime.sleepFor(seconds(0.001));
            continue;
        }
        if (!letters->comesFromReceiver(sockets, from)) continue;
        Bytes reply;
        const auto message = opened(ByteView(buffer).first(static_cast<std::size_t>(size)), reply);
        if (!reply.empty()) sockets.send(fd, reply, from);
        if (!message || !letters->put(parseReceiverMessage(*message))) continue;
        // The destructor runs on the main thread too, so a client that exists when the job begins exists until its end.
        runtime.postMain([this, client = std::weak_ptr<Inbox>(letters)] {
            if (!client.expired()) drain();
        });
    }
}

// The message in a datagram; absent when the client gets nothing. `reply` is to be sent at once.
std::optional<ByteView> RemoteClient::opened(ByteView datagram, Bytes& reply) {
    const TimePoint now = runtime.now();
    const Lock lock(sealing);
    if (!seal) return datagram;
    const auto incoming = seal->incoming(datagram, now);
    append(reply, incoming.reply);
    if (incoming.message.empty() && !datagram.empty()) return std::nullopt;
    return incoming.message;
}

std::optional<RemoteClient::Loss> RemoteClient::loss() {
    const Lock lock(sealing);
    if (!seal || !seal->inSession()) return std::nullopt;
    return Loss{.received = seal->received(), .lost = seal->lost()};
}

void RemoteClient::drain() {
    for (const ReceiverMessage& message : inbox->takeAll())
        take(message);
}

void RemoteClient::take(const ReceiverMessage& message) {
    lastHeard = runtime.now();
    if (std::holds_alternative<Busy>(message)) {
        // Another client is in control; the receiver has released our faders.
        faders.forget();
        if (linkState == LinkState::connected) enter(LinkState::takenOver);
        if (linkState == LinkState::searching || linkState == LinkState::lost) enter(LinkState::busy);
    } else if (std::holds_alternative<Pong>(message)) {
        wantsControl = false;
        if (linkState != LinkState::connected) answered();
    } else if (linkState == LinkState::searching || linkState == LinkState::lost) {
        // The pong may have been lost, or these messages continue after a pause: ask for the full state.
        answered();
        sayHello();
    }
    sessionPicture.apply(message);
    if (onMessage) onMessage(message);
}

void RemoteClient::answered() {
    sessionPicture = {};
    enter(LinkState::connected);
}

// What was held and wished for is too old when the receiver is back: it may show other tracks by then.
void RemoteClient::lose() {
    faders.forget();
    wantsControl = false;
    enter(LinkState::lost);
}

void RemoteClient::enter(LinkState state) {
    if (linkState == state) return;
    linkState = state;
    if (onState) onState(state);
}

void RemoteClient::send(ByteView datagram) {
    if (fd < 0 || !receiver) return;
    lastSent = runtime.now();
    Bytes sealed;
    {
        const Lock lock(sealing);
        if (seal) append(sealed, seal->outgoing(datagram, lastSent));
        if (seal) datagram = sealed;
    }
    if (!datagram.empty()) sockets.send(fd, datagram, *receiver);
}

void RemoteClient::sayHello() {
    lastHello = runtime.now();
    send(helloCommand(token));
}

void RemoteClient::touch(Strip strip) {
    faders.touch(strip);
}

void RemoteClient::move(Strip strip, FaderValue value) {
    sessionPicture.moveFader(strip, value);
    send(faderMoveCommand(strip, value));
}

void RemoteClient::release(Strip strip) {
    faders.release(strip);
}

void RemoteClient::takeOver() {
    wantsControl = linkState != LinkState::connected;
    send(takeOverCommand());
    // A take-over is not answered; the hello brings a pong and the full state.
    sayHello();
}

// Called four times in each keep-alive period.
void RemoteClient::tick() {
    const TimePoint now = runtime.now();
    const bool silent = now - lastHeard >= options.silence;
    if (silent && linkState != LinkState::searching) lose();
    if (linkState != LinkState::connected) {
        if (now - lastHello < options.keepAlive) return;
        return wantsControl ? takeOver() : sayHello();
    }
    // A hello is answered with a pong, so it finds out whether a quiet receiver is still there.
    const bool quiet = now - lastHeard >= 2 * options.keepAlive && now - lastHello >= options.keepAlive;
    if (quiet || now - lastHello >= options.refresh) {
        sayHello();
    } else if (now - lastSent >= options.keepAlive) {
        // A sign of life: a V-Pot delta of 0 has no effect, and unlike a hello it does not bring the full state.
        send(vpotDeltaCommand(*Strip::of(0), 0));
    }
}

std::uint64_t RemoteClient::malformedCount() const {
    return inbox->malformedCount();
}

std::uint64_t RemoteClient::droppedCount() const {
    return inbox->droppedCount();
}

} // namespace lumbrine::remote
