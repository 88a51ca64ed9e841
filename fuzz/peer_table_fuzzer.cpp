// More peers than the table holds, as in an attack with forged addresses, while time passes. The input is a list of
// steps of 3 bytes: an operation and a big-endian 16-bit number n. The operation's low two bits: 0, n new peers send a
// datagram each; 1, peer n of those seen so far sends one; 2, n/64 s pass; 3, the server broadcasts. Its high six bits
// choose the datagram.
#include "base/big_endian.h"
#include "client_link/testing/served_peers.h"
#include "fuzz/require.h"

#include <algorithm>
#include <map>
#include <set>

namespace {

using namespace lumbrine;

constexpr std::size_t mostSources = 2 * PeerTable::maxPeers; // per input, so that an input runs fast

bool isTakeOver(const Bytes& datagram) {
    return datagram.size() >= 2 && datagram[0] == 0x01 && datagram[1] == 0x25;
}

bool isHello(const Bytes& datagram) {
    return datagram.size() >= 10 && datagram[0] == 0x01 && datagram[1] == 0x00;
}

// 0-55 a fader move, 56-62 a hello with one of four device tokens (0: none), 63 a take-over.
Bytes datagramOf(int choice) {
    if (choice == 63) return {0x01, 0x25};
    if (choice >= 56) return {0x01, 0x00, 0, 0, 0, 0, 0, 0, 0, static_cast<std::uint8_t>(choice & 3)};
    return {0x01, 0x01, static_cast<std::uint8_t>(choice & 15), 0x20, 0x00};
}

class Flood {
public:
    void newSource(const Bytes& datagram) {
        if (heardAt.size() >= mostSources) return;
        const std::size_t number = heardAt.size();
        keys.push_back("10.0." + std::to_string(number / 250) + "." + std::to_string(number % 250) + ":6000");
        send(number, datagram);
    }

    void knownPeer(std::size_t number, const Bytes& datagram) {
        if (!keys.empty()) send(number % keys.size(), datagram);
    }

    void pass(double time) { peers.pass(time); }

    void broadcast() {
        const auto owner = peers.server.liveOwnerKey();
        peers.server.broadcast(news);
        const auto sent = peers.takeSent();
        require(sent.size() == (owner ? 1U : 0U));
        if (owner) require(sent[0] == RecordingSockets::Sent(*owner, news));
    }

    // The table is bounded, and a full table forgets the peer that has been silent longest. Peers that have owned
    // control may be kept longer, or forgotten earlier: when their device sends from another address.
    void checkTable() {
        std::size_t kept = 0;
        TimePoint forgottenLast{}, keptFirst = TimePoint::max();
        for (const auto& [number, time] : heardAt) {
            const bool known = isKnown(keys[number]);
            kept += known;
            if (owners.contains(keys[number])) continue;
            if (known)
                keptFirst = std::min(keptFirst, time);
            else
                forgottenLast = std::max(forgottenLast, time);
        }
        require(kept <= PeerTable::maxPeers);
        require(kept == heardAt.size() || forgottenLast <= keptFirst);
        require(peers.server.connectedIPs().size() <= kept);
    }

private:
    bool isKnown(const std::string& key) {
        peers.server.send(news, key);
        return !peers.takeSent().empty();
    }

    // A live owner loses control only to a take-over or to a peer with its own device token, however many peers send.
    void send(std::size_t number, const Bytes& datagram) {
        const std::string& key = keys[number];
        const auto ownerBefore = peers.server.liveOwnerKey();
        peers.from(key, datagram);
        heardAt.insert_or_assign(number, peers.runtime.time);
        if (isHello(datagram) && datagram[9] != 0) tokens[key] = datagram[9];

        const auto owner = peers.server.liveOwnerKey();
        require(owner.has_value());
        owners.insert(*owner);
        if (ownerBefore && owner != ownerBefore)
            require(owner == key && (isTakeOver(datagram) || isSameDevice(key, *ownerBefore)));
        const auto delivered = peers.takeDelivered();
        const auto sent = peers.takeSent();
        require(delivered.size() == (owner == key ? 1U : 0U) && sent.size() <= (owner == key ? 0U : 1U));
        require(isKnown(*owner));
    }

    bool isSameDevice(const std::string& one, const std::string& other) {
        return tokens.contains(one) && tokens.contains(other) && tokens[one] == tokens[other];
    }

    const Bytes news{0x01, 0x1D, 0x00, 0x00};
    ServedPeers peers;
    std::vector<std::string> keys;
    std::map<std::size_t, TimePoint> heardAt;
    std::map<std::string, int> tokens; // each peer's latest device token
    std::set<std::string> owners;      // every peer that has owned control
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Flood flood;
    for (ByteView rest(data, size); rest.size() >= 3; rest = rest.subspan(3)) {
        const std::size_t number = readBigEndian16(rest, 1);
        const Bytes datagram = datagramOf(rest[0] >> 2);
        switch (rest[0] & 3) {
        case 0:
            for (std::size_t i = 0; i < std::min(number, mostSources); ++i)
                flood.newSource(datagram);
            break;
        case 1:
            flood.knownPeer(number, datagram);
            break;
        case 2:
            flood.pass(static_cast<double>(number) / 64);
            break;
        default:
            flood.broadcast();
        }
    }
    flood.checkTable();
    return 0;
}
