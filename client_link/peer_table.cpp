#include "client_link/peer_table.h"

#include "base/big_endian.h"
#include "client_link/protocol_version.h"

#include <algorithm>

namespace lumbrine {

namespace {

constexpr std::uint8_t hello = 0x00;
constexpr std::uint8_t takeOver = 0x25;

bool hasHeader(ByteView bytes, std::uint8_t opcode) {
    return bytes.size() >= 2 && bytes[0] == protocolVersion && bytes[1] == opcode;
}

// The device token of a hello; absent in other datagrams. Token 0 means that the device has none.
std::optional<std::uint64_t> announcedToken(ByteView bytes) {
    if (bytes.size() < 10 || !hasHeader(bytes, hello)) return std::nullopt;
    const std::uint64_t token = readBigEndian64(bytes, 2);
    if (token == 0) return std::nullopt;
    return token;
}

} // namespace

std::optional<Ownership> PeerTable::admit(ByteView bytes, const PeerName& sender, TimePoint now,
                                          std::optional<SealedBy> seal) {
    Peer& peer = note(bytes, sender, now);
    peer.seal = seal;
    if (seal) peer.token = seal->token;
    const std::optional<std::uint64_t> token = peer.token;
    displacedIP.clear();
    if (!owner || owner->key != sender.key) {
        // The same token at another address is the same device after an app restart or a change of network.
        const bool sameDevice = isOwnersDevice(peer);
        const bool isTaken = !sameDevice && liveOwner(now) != nullptr;
        if (isTaken && !hasHeader(bytes, takeOver)) return std::nullopt;
        if (isTaken) displacedIP = find(owner->key)->ip;
        if (sameDevice) peers.erase(owner->key);
        const Ownership ownership = sameDevice ? owner->ownership : nextOwnership(peer, sender.key);
        if (owner) rememberOwner();
        if (!owner) owner.emplace();
        owner->key = sender.key;
        owner->ownership = ownership;
    }
    owner->token = token;
    owner->seal = seal;
    return owner->ownership;
}

bool PeerTable::isOwnersDevice(const Peer& peer) const {
    if (!owner || !peer.token || peer.token != owner->token) return false;
    return !owner->seal || peer.seal == owner->seal; // anybody can read a token off the network
}

Ownership PeerTable::nextOwnership(const Peer& device, const std::string& key) const {
    const bool isFormer = std::ranges::any_of(
        former, [&](const Owner& each) { return each.key == key || (each.token && each.token == device.token); });
    return {.number = owner ? owner->ownership.number + 1 : 1, .isNewcomers = !isFormer};
}

void PeerTable::rememberOwner() {
    auto place = std::ranges::find(former, owner->key, &Owner::key);
    if (place == former.end() && former.size() < maxFormer) place = former.insert(place, Owner{});
    if (place == former.end()) place = former.begin();
    *place = *owner;
    std::rotate(place, place + 1, former.end());
}

PeerTable::Peer& PeerTable::note(ByteView bytes, const PeerName& sender, TimePoint now) {
    auto record = peers.find(sender.key);
    if (record == peers.end()) {
        if (peers.size() >= maxPeers) makeRoom(now);
        record = peers.try_emplace(sender.key).first;
        record->second.ip = sender.ip;
    }
    Peer& peer = record->second;
    if (!isLive(peer, now)) peer.token.reset(); // the record is as good as removed
    peer.address = sender.address;
    peer.lastSeen = now;
    if (const auto token = announcedToken(bytes)) peer.token = token;
    return peer;
}

void PeerTable::makeRoom(TimePoint now) {
    forgetSilent(now);
    if (peers.size() < maxPeers) return;

    // A quarter at once, so that a flood pays for this search once in 256 new peers.
    std::vector<Peers::iterator> candidates;
    candidates.reserve(peers.size());
    for (auto record = peers.begin(); record != peers.end(); ++record)
        if (!owner || record->first != owner->key) candidates.push_back(record);
    const auto forgotten = candidates.begin() + maxPeers / 4;
    std::ranges::nth_element(candidates, forgotten, {}, [](const auto& record) { return record->second.lastSeen; });
    for (auto candidate = candidates.begin(); candidate != forgotten; ++candidate)
        peers.erase(*candidate);
}

void PeerTable::forgetSilent(TimePoint now) {
    std::erase_if(
        peers, [&](const auto& entry) { return !isLive(entry.second, now) && (!owner || entry.first != owner->key); });
}

std::vector<std::string> PeerTable::liveIPs(TimePoint now) const {
    std::vector<std::string> ips;
    for (const auto& [key, peer] : peers)
        if (isLive(peer, now)) ips.push_back(peer.ip);
    return ips;
}

const PeerTable::Peer* PeerTable::find(std::string_view key) const {
    const auto found = peers.find(key);
    return found == peers.end() ? nullptr : &found->second;
}

const PeerTable::Owner* PeerTable::liveOwner(TimePoint now) const {
    if (!owner) return nullptr;
    const Peer* const peer = find(owner->key);
    return peer != nullptr && isLive(*peer, now) ? &*owner : nullptr;
}

} // namespace lumbrine
