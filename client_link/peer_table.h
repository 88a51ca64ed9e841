// The peers that sent datagrams recently, and the rule that decides which of them is the owner, the only one that may
// control the surfaces.
//
// A peer is live for 6.0 seconds after its last datagram. A live owner keeps control until another peer sends TakeOver
// or the owner's own device token; otherwise the next datagram from any peer makes that peer the owner.
#pragma once

#include "base/bytes.h"
#include "client_link/ownership.h"
#include "platform/api/datagram_sockets.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

// A peer's address, and its text.
struct PeerName {
    PeerAddress address;
    std::string ip;  // numeric host
    std::string key; // "host:port"
};

// Not thread-safe.
class PeerTable {
public:
    struct Peer {
        PeerAddress address;
        std::string ip;
        TimePoint lastSeen = distantPast;
        std::optional<std::uint64_t> token; // the device's own number, from its hello
        std::optional<SealedBy> seal;       // of its last datagram
    };

    struct Owner {
        std::string key;
        std::optional<std::uint64_t> token;
        std::optional<SealedBy> seal;
        Ownership ownership;
    };

    static constexpr Duration livePeriod = seconds(6.0);

    // The most records in the table: without a limit, datagrams with forged source addresses could fill the memory.
    // When a new peer finds the table full, all records that are no longer live are removed. If that frees nothing, a
    // quarter of the records is removed, longest silent first, but never the owner's. A removed peer that sends again
    // is treated as new; it has lost only the token from its hello.
    static constexpr std::size_t maxPeers = 1024;

    // A datagram has arrived: records its sender and decides who is the owner. Returns the ownership when the owner is
    // the sender, nothing when the datagram is refused. Allocates nothing when the sender is known and the owner.
    //
    // `seal` is whose seal the datagram had. An owner that seals follows its token to another address only under the
    // same seal.
    std::optional<Ownership> admit(ByteView bytes, const PeerName& sender, TimePoint now,
                                   std::optional<SealedBy> seal = std::nullopt);

    // So many owners are remembered that another device or another address has replaced, the latest ones.
    static constexpr std::size_t maxFormer = 32;

    // The numeric host of the live owner that the last `admit` replaced by another device; empty when it did not.
    const std::string& displaced() const { return displacedIP; }

    // Removes the peers that are no longer live, but not the last owner: a datagram that arrived while it was live may
    // still be on its way to `admit`.
    void forgetSilent(TimePoint now);

    // The numeric host of each live peer.
    std::vector<std::string> liveIPs(TimePoint now) const;

    // Null when there is none. Valid until the next `admit` or `forgetSilent`. A live owner is in the table.
    const Peer* find(std::string_view key) const;
    const Owner* liveOwner(TimePoint now) const;

private:
    using Peers = std::map<std::string, Peer, std::less<>>;

    Peer& note(ByteView bytes, const PeerName& sender, TimePoint now);
    bool isOwnersDevice(const Peer& peer) const;
    Ownership nextOwnership(const Peer& device, const std::string& key) const;
    void rememberOwner();
    void makeRoom(TimePoint now);

    static bool isLive(const Peer& peer, TimePoint now) { return now - peer.lastSeen < livePeriod; }

    Peers peers;
    std::optional<Owner> owner; // the last one, live or not
    std::vector<Owner> former;  // in the order in which they lost control or left an address
    std::string displacedIP;
};

} // namespace lumbrine
