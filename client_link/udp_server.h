// The receiver's UDP endpoint for clients: one dual-stack socket, a table of recent peers, and the rule that decides
// which peer is the owner, the only one that may control the surfaces.
//
// A peer is live for 6.0 seconds after its last datagram. A live owner keeps control until another peer sends TakeOver
// or the owner's own device token; otherwise the next datagram from any peer makes that peer the owner.
#pragma once

#include "base/bytes.h"
#include "client_link/refusal_limit.h"
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
    static constexpr std::size_t maxDatagram = 2048; // the socket truncates longer datagrams

    // The most records in the table: without a limit, datagrams with forged source addresses could fill the memory.
    // When a new peer finds the table full, the server removes all records that are no longer live. If that frees
    // nothing, it removes a quarter of the records, longest silent first, but never the owner's. A removed peer that
    // sends again is treated as new; it has lost only the token from its hello.
    static constexpr std::size_t maxClients = 1024;

    UDPServer(Runtime& rt, DatagramSockets& datagramSockets, std::uint16_t portToBind);

    // Calls `end`.
    ~UDPServer();

    // Called with each datagram of the owner and the owner's key ("host:port"), on the receive thread, with no lock
    // held. Both arguments are valid during the call only. Set it before `start`.
    std::function<void(ByteView bytes, std::string_view key)> onDatagram;

    // Opens, configures and binds the socket and starts the receive thread. After a failure, the server neither
    // receives nor sends. Call once.
    std::expected<void, UDPError> start();

    // Waits for the receive thread to end and closes the socket; a callback that still runs can send until then.
    // Afterwards nothing is received or sent. Call it on the thread that called `start`, never from the callback.
    // Further calls do nothing.
    void end();

    // Sends to the peer with this key, if it is in the table. Errors are ignored. Any thread.
    void send(ByteView bytes, std::string_view key);

    // Sends to the owner if it is live, and removes all peers that are no longer live. Errors are ignored. Any thread.
    void broadcast(ByteView bytes);

    // The numeric hosts of all live peers, sorted, without duplicates. Any thread.
    std::vector<std::string> connectedIPs();

    // The numeric host of the owner, and its key. Absent when there is no live owner. Any thread.
    std::optional<std::string> ownerIP();
    std::optional<std::string> liveOwnerKey();

    // Handles one datagram, as the receive thread does: records the peer, decides who is the owner, then calls
    // onDatagram or answers "busy", the latter as often as RefusalLimit allows. Allocates nothing when the sender is the
    // owner and sent the last datagram too.
    //
    // A datagram that can only come from a receiver, by its type or because its sender is this very socket, is ignored.
    // Otherwise two receivers could answer each other for ever, or stream their state to each other as if to a client.
    void handleDatagram(ByteView bytes, const PeerAddress& from);

    const std::uint16_t port;

private:
    struct Client {
        PeerAddress addr;
        std::string ip; // numeric host
        TimePoint lastSeen = distantPast;
        std::optional<std::uint64_t> token; // the device's own number, from its hello
    };
    using Clients = std::map<std::string, Client, std::less<>>;

    // A peer's address as text. It is formatted again only when a datagram comes from another address, so that a stream
    // of datagrams from one peer allocates nothing.
    struct PeerName {
        PeerAddress addr;
        std::string ip;
        std::string key;     // "host:port"; empty before the first datagram
        bool isSelf = false; // this server's own socket
    };

    void receiveLoop();
    void namePeer(const PeerAddress& from);
    bool deliverable(ByteView bytes, const PeerAddress& from, TimePoint now) LUMBRINE_EXCLUDES(clientLock);
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

    // Receive thread only.
    PeerName peer; // the sender of the current datagram
    RefusalLimit refusals;

    std::unique_ptr<Thread> receiveThread;
};

} // namespace lumbrine
