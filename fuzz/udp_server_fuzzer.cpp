// The owner rule with up to eight peers. The input is a list of steps: a byte with the peer in its low three bits and
// the operation in the next two, then an amount. Operations 0 and 1 send a datagram of that many bytes, which follow;
// 2 lets amount/16 s pass; 3 broadcasts.
#include "client_link/testing/served_peers.h"
#include "fuzz/require.h"

namespace {

using namespace lumbrine;

const Bytes busy{0x01, 0x7D};
const Bytes news{0x01, 0x1D, 0x00, 0x00};

bool isReceiverMessage(const Bytes& datagram) {
    if (datagram.size() < 2 || datagram[0] != 0x01) return false;
    return datagram[1] >> 4 == 0x1 || datagram[1] == 0x7D || datagram[1] == 0x7F;
}

// A datagram is delivered if its sender is then the owner; otherwise the sender gets one busy message, unless it has
// had many. What only a receiver sends does nothing.
void checkDatagram(ServedPeers& peers, const std::string& peer, const Bytes& datagram) {
    const auto ownerBefore = peers.server.liveOwnerKey();
    peers.from(peer, datagram);
    const auto delivered = peers.takeDelivered();
    const auto sent = peers.takeSent();
    const auto owner = peers.server.liveOwnerKey();
    if (isReceiverMessage(datagram)) {
        require(owner == ownerBefore && delivered.empty() && sent.empty());
        return;
    }
    require(owner.has_value());
    if (delivered.empty()) {
        require(owner == ownerBefore && owner != peer);
        require(sent.size() <= 1 && (sent.empty() || sent[0] == RecordingSockets::Sent(peer, busy)));
    } else {
        require(owner == peer && sent.empty());
        require(delivered.size() == 1 && delivered[0] == ServedPeers::Delivered(peer, datagram));
    }
}

void checkBroadcast(ServedPeers& peers) {
    const auto owner = peers.server.liveOwnerKey();
    peers.server.broadcast(news);
    const auto sent = peers.takeSent();
    require(sent.size() == (owner ? 1u : 0u));
    if (owner) require(sent[0] == RecordingSockets::Sent(*owner, news));
    require(peers.server.connectedIPs().size() <= 8 && peers.server.ownerIP().has_value() == owner.has_value());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ServedPeers peers;
    ByteView rest(data, size);
    while (rest.size() >= 2) {
        const int step = rest[0];
        const std::size_t amount = rest[1];
        rest = rest.subspan(2);
        const std::string peer = "::ffff:192.168.1." + std::to_string(step & 3) + ":" + std::to_string(step & 7);
        if ((step >> 3 & 3) == 2) {
            peers.pass(static_cast<double>(amount) / 16);
        } else if ((step >> 3 & 3) == 3) {
            checkBroadcast(peers);
        } else {
            const ByteView datagram = rest.first(std::min(amount, rest.size()));
            rest = rest.subspan(datagram.size());
            if (!datagram.empty()) checkDatagram(peers, peer, {datagram.begin(), datagram.end()});
        }
    }
    return 0;
}
