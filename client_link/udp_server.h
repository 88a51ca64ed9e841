// The receiver's UDP endpoint for clients: one dual-stack socket. It delivers what the owner sends, answers everybody
// else with "busy", and sends to the owner. PeerTable decides who is the owner.
#pragma once

#include "base/bytes.h"
#include "client_link/ownership.h"
#include "client_link/peer_table.h"
#include "client_link/refusal_limit.h"
#include "client_link/sealed_sessions.h"
#include "platform/api/datagram_sockets.h"
#include "platform/api/runtime.h"

#include <atomic>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <set>
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
    static constexpr std::size_t maxDatagram = 2048; // the socket truncates longer datagrams

    UDPServer(Runtime& runtime, DatagramSockets& sockets, std::uint16_t port);

    // Calls `end`.
    ~UDPServer();

    // Called with each datagram of the owner, on the receive thread, with no lock held. Both arguments are valid during
    // the call only. Set it before `start`.
    std::function<void(ByteView bytes, const Sender& sender)> onDatagram;

    // Called when a client has taken control from another one that was live, with the numeric hosts of both, before
    // onDatagram. On the receive thread, with no lock held. Set it before `start`.
    std::function<void(const std::string& by, const std::string& from)> onTakeOver;

    // Called when the number of `strangers` has grown. On the receive thread, with no lock held. Set it before `start`.
    std::function<void()> onStranger;

    // Called when the system sends nothing while datagrams arrive, because of a firewall or a missing permission: when
    // it has refused to send three times, with a datagram received before each. Called again for each further three.
    // The argument is an errno value. On the thread that sends, with no lock held. Set it before `start`.
    std::function<void(int error)> onSendingRefused;

    // Lets clients seal. Without it, every datagram counts as unsealed. Call it before `start`; `secrets` outlives the
    // server.
    void useSeals(Secrets& secrets);

    // The keys that clients may seal with. Clients of other keys do not seal any more. Any thread.
    void setKeys(const std::vector<PairingKey>& keys);

    // While this is on, a datagram that is not sealed is not answered, enters no table and is not delivered. Nothing is
    // sent unsealed. Any thread.
    void letOnlyPairedIn(bool on);

    // How many hosts have sent something unsealed while only paired clients were let in: at most maxStrangers. Any
    // thread.
    static constexpr std::size_t maxStrangers = 100;
    std::size_t strangers() const { return strangerCount; }

    // The datagrams of the live owner, when it seals. Any thread.
    std::optional<SealedSessions::Loss> ownersLoss();

    // When each of the keys last opened a session, in the order of `setKeys`. Any thread.
    std::vector<TimePoint> lastUsesOfKeys();

    // Opens, configures and binds the socket and starts the receive thread. After a failure, the server neither
    // receives nor sends. Call once.
    std::expected<void, UDPError> start();

    // Waits for the receive thread to end and closes the socket; a callback that still runs can send until then.
    // Afterwards nothing is received or sent. Call it on the thread that called `start`, never from the callback.
    // Further calls do nothing.
    void end();

    // Sends to the peer with this key, if it is in the table. Never waits; a failure is counted. Any thread.
    void send(ByteView bytes, std::string_view key);

    // Sends to the owner if it is live, and removes all peers that are no longer live. Otherwise like `send`.
    void broadcast(ByteView bytes);

    // How many datagrams the system did not take, in most cases because its buffer was full. Any thread.
    std::uint64_t unsentDatagrams() const { return unsent; }

    // The numeric hosts of all live peers, sorted, without duplicates. Any thread.
    std::vector<std::string> connectedIPs();

    // The numeric host of the owner, its key, and its ownership. Absent when there is no live owner. Any thread.
    std::optional<std::string> ownerIP();
    std::optional<std::string> liveOwnerKey();
    std::optional<Ownership> ownership();

    // Handles one datagram, as the receive thread does: records the peer, decides who is the owner, then calls
    // onDatagram, or answers "busy" as often as RefusalLimit allows. Allocates nothing when the sender is the owner and
    // sent the last datagram too.
    //
    // A sealed datagram is delivered without its trailer, and at most once.
    //
    // A datagram that can only come from a receiver, by its type or because its sender is this very socket, is ignored.
    // Otherwise two receivers could answer each other for ever, or stream their state to each other as if to a client.
    void handleDatagram(ByteView bytes, const PeerAddress& from);

    const std::uint16_t port;

private:
    void receiveLoop();
    SealedSessions::Judged judge(ByteView bytes, TimePoint arrived) LUMBRINE_REQUIRES(peersLock);
    void refuse();
    void answerOpening(ByteView answer);
    void noteStranger();
    void namePeer(const PeerAddress& from);
    void sendTo(const PeerAddress& to, ByteView bytes);
    void countRefusal(int result);

    Runtime& runtime;
    DatagramSockets& sockets;
    std::atomic<int> fd{-1};
    std::atomic<bool> running{false};
    std::atomic<std::uint64_t> unsent{0};
    std::atomic<bool> heard{false}; // since the last refusal: without a network, nothing is heard either
    std::atomic<int> refusedInARow{0};

    Mutex peersLock; // sends and the callback happen outside it
    PeerTable peers LUMBRINE_GUARDED_BY(peersLock);
    std::optional<SealedSessions> seals LUMBRINE_GUARDED_BY(peersLock);

    std::atomic<std::size_t> strangerCount{0};

    // Receive thread only. The sender's address is formatted only when it is another one than the last, so that a
    // stream of datagrams from one peer allocates nothing.
    PeerName peer;           // the sender of the current datagram; empty before the first
    bool peerIsSelf = false; // it is this server's own socket
    std::string displaced;   // whom it took control from; empty for nobody
    RefusalLimit refusals;
    std::set<std::string> strangerIPs; // at most maxStrangers

    std::unique_ptr<Thread> receiveThread;
};

} // namespace lumbrine
