// Datagrams that nobody with a key has made, in front of a receiver that lets only paired clients in and has an open
// session. The input is a list of steps: a byte, then an amount. The byte's low two bits: 0, a datagram of that many
// bytes, which follow; 1, a recorded datagram again; 2, a recorded datagram with one byte changed; 3, amount/16 s pass.
// Its third bit says from which of two addresses.
#include "client_link/testing/sealing_client.h"
#include "fuzz/require.h"

namespace {

using namespace lumbrine;

const Bytes touch{0x01, 0x02, 0x00};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ServedPeers peers;
    ToySecrets secrets(5);
    peers.server.useSeals(secrets);
    peers.server.setKeys({studioKey});
    peers.server.letOnlyPairedIn(true);
    SealingClient phone(peers, "10.0.0.1:5000", 7);
    std::vector<Bytes> recording{phone.sealed(phone.hello)};
    peers.from(phone.address, recording.back());
    phone.receiveAll();
    require(phone.inSession());
    for (int i = 0; i < 3; ++i) {
        recording.push_back(phone.sealed(touch));
        peers.from(phone.address, recording.back());
    }
    peers.takeDelivered();
    const auto ownership = peers.server.ownership();

    ByteView rest(data, size);
    while (rest.size() >= 2) {
        const std::uint8_t step = rest[0];
        const std::size_t amount = rest[1];
        rest = rest.subspan(2);
        Bytes datagram = recording[amount % recording.size()];
        if ((step & 3) == 0) {
            const ByteView bytes = rest.first(std::min(amount, rest.size()));
            rest = rest.subspan(bytes.size());
            datagram.assign(bytes.begin(), bytes.end());
        } else if ((step & 3) == 2) {
            datagram[amount % datagram.size()] ^= static_cast<std::uint8_t>(1 << (step >> 3 & 7));
        } else if ((step & 3) == 3) {
            peers.pass(static_cast<double>(amount) / 16);
            continue;
        }
        if (datagram.empty()) continue;
        peers.from((step & 4) != 0 ? phone.address : "10.0.0.2:5000", datagram);
        require(peers.takeDelivered().empty() && peers.takeSent().empty());
        require(!peers.server.ownership() || peers.server.ownership() == ownership);
    }
    return 0;
}
