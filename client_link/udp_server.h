// The receiver's endpoint towards the remote clients: one dual-stack UDP socket, a table of the peers that were heard
// lately, and the rule of who of them is the owner, the one device that may control the surfaces.
//
// A peer is live while fewer than 6.0 seconds have passed since its last datagram.
#pragma once

#include "base/bytes.h"
#include "platform/api/datagram_sockets.h"
#include "platform/api/runtime.h"

#include <atomic>
#include <cstdint>
#include <expected>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

struct UDPError {
    int code;                // errno
    std::string description; // "bind: Address already in use"
};

class UDPServer {
public:
    static constexpr Duration livePeriod = seconds(6.0);
    static constexpr std::size_t maxDatagram = 2048; // longer ones are cut by the socket

    // Forged source addresses could fill the table without end, since nothing but `broadcast` prunes it. A new peer
    // that finds this many records makes room: the records that are no longer live go first; where that is not enough,
    // a quarter of the others, longest silent first, never the owner's. A peer that is forgotten so is new when it is
    // heard again: it has lost nothing but the token of its hello.
    static constexpr std::size_t maxClients = 1024;

    UDPServer(Runtime& rt, DatagramSockets& datagramSockets, std::uint16_t portToBind);

    // Ends as `end` does.
    ~UDPServer();

    // Every datagram of the owner, and the sender's key, on the receive thread, with no lock held. Both arguments are
    // valid during the call. Set before `start`.
    std::function<void(ByteView bytes, std::string_view key)> onDatagram;

    // Opens, configures and binds the socket and starts the receive thread. After a failure the server neither receives
    // nor sends. Once.
    std::expected<void, UDPError> start();

    // Waits for the receive thread to end, in whose callback the server sends as ever, and closes the socket. After it
    // nothing is received or sent. On the thread that started it, not from the callback; again does nothing.
    void end();

    // To the peer with that key, if it is in the table. Errors are ignored. Any thread.
    void send(ByteView bytes, std::string_view key);

    // To the live owner alone; forgets the peers that are no longer live. Errors are ignored. Any thread.
    void broadcast(ByteView bytes);

    // The host texts of all live peers, each once, in the order of the texts. Any thread.
    std::vector<std::string> connectedIPs();

    // The live owner's host text, or its key ("host:port"). Any thread.
    std::optional<std::string> ownerIP();
    std::optional<std::string> liveOwnerKey();

    // One datagram from a peer, as the receive thread takes it from the socket: notes the peer, decides who is owner,
    // delivers or refuses. Allocates nothing while the owner stays the same and is the sender.
    void handleDatagram(ByteView bytes, const PeerAddress& from);

    const std::uint16_t port;

private:
    struct Client {
        PeerAddress addr;
        std::string ip; // numeric host
        TimePoint lastSeen = distantPast;
        std::optional<std::uint64_t> token; // what the device announced in a hello
    };
    using Clients = std::map<std::string, Client, std::less<>>;

    // The texts of a peer's address. Asked for again only when a datagram comes from another address than the one
    // before.
    struct PeerName {
        PeerAddress addr;
        std::string ip;
        std::string key; // "host:port"; empty before the first datagram
    };

    void receiveLoop();
    void namePeer(const PeerAddress& from);
    bool deliverable(ByteView bytes, const PeerAddress& from) LUMBRINE_EXCLUDES(clientLock);
    Client& noteClientLocked(ByteView bytes, const PeerAddress& from, TimePoint now) LUMBRINE_REQUIRES(clientLock);
    void makeRoomLocked(TimePoint now) LUMBRINE_REQUIRES(clientLock);
    bool ownerLiveLocked(TimePoint now) LUMBRINE_REQUIRES(clientLock);

    static bool isLive(const Client& client, TimePoint now) { return now - client.lastSeen < livePeriod; }

    Runtime& runtime;
    DatagramSockets& sockets;
    std::atomic<int> fd{-1};
    std::atomic<bool> running{false};

    Mutex clientLock; // sends and the callback happen outside it
    Clients clients LUMBRINE_GUARDED_BY(clientLock);
    std::optional<std::string> ownerKey LUMBRINE_GUARDED_BY(clientLock);

    PeerName peer; // of the datagram in hand; of the receive thread

    std::unique_ptr<Thread> receiveThread;
};

} // namespace lumbrine
