#include "tests/simulation/owner_oracle.h"

#include "tests/simulation/phone.h"

#include <algorithm>

namespace lumbrine::simulation {

bool isOfReceiver(const ReceivedDatagram& datagram) {
    static const std::string own = std::string("::ffff:") + receiverAddress + ":" + std::to_string(receiverPort);
    if (datagram.sender == own) return true;
    const Bytes& bytes = datagram.bytes;
    if (bytes.size() < 2 || bytes[0] != 1) return false;
    return (bytes[1] >= 0x10 && bytes[1] <= 0x1F) || bytes[1] == 0x7D || bytes[1] == 0x7F;
}

bool OwnerOracle::accept(const ReceivedDatagram& datagram) {
    if (isOfReceiver(datagram)) return false;
    const Bytes& bytes = datagram.bytes;
    std::uint64_t token = 0;
    const bool versioned = bytes.size() >= 2 && bytes[0] == 1;
    if (versioned && bytes[1] == 0 && bytes.size() >= 10)
        for (std::size_t i = 2; i < 10; ++i)
            token = token * 256 + bytes[i];

    Peer& sender = peers[datagram.sender];
    // The owner's silence counts up to this datagram, also when the owner itself breaks it.
    const bool ownerIsLive = ownerKey && datagram.at - peers[*ownerKey].lastSeen < seconds(6);
    if (datagram.at - sender.lastSeen >= seconds(6)) sender.token = 0; // forgotten with its record
    sender.lastSeen = datagram.at;
    if (token != 0) sender.token = token;

    if (ownerKey == datagram.sender) {
        tokensInControl.insert(sender.token);
        return true;
    }
    const bool sameDevice = ownerKey && sender.token != 0 && sender.token == peers[*ownerKey].token;
    const bool takesOver = versioned && bytes[1] == 0x25;
    if (ownerIsLive && !sameDevice && !takesOver) return false;
    if (sameDevice) {
        peers.erase(*ownerKey);
    } else {
        ++ownerNumber;
        newcomer =
            !keysInControl.contains(datagram.sender) && (sender.token == 0 || !tokensInControl.contains(sender.token));
    }
    ownerKey = datagram.sender;
    keysInControl.insert(datagram.sender);
    tokensInControl.insert(sender.token);
    return true;
}

Acceptance acceptedOf(const std::vector<ReceivedDatagram>& received) {
    OwnerOracle oracle;
    Acceptance result;
    for (const ReceivedDatagram& datagram : received) {
        const std::optional<std::string> before = oracle.owner();
        if (!oracle.accept(datagram)) continue;
        // An owner that returns after it had timed out counts as a new one, even if there was no other in between.
        const bool back = !result.accepted.empty() && datagram.at - result.accepted.back().at >= seconds(6);
        if (before != oracle.owner() || back)
            result.changes.push_back({datagram.at, before, *oracle.owner(), oracle.number(), oracle.isNewcomer()});
        result.accepted.push_back(datagram);
        result.numbers.push_back(oracle.number());
    }
    return result;
}

TimePoint Acceptance::endOf(int number) const {
    const auto next = std::ranges::upper_bound(changes, number, {}, &OwnerChange::number);
    return next == changes.end() ? TimePoint::max() : next->at;
}

} // namespace lumbrine::simulation
