#include "client_link/udp_server.h"

#include "client_link/state_messages.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

namespace lumbrine {

using Verdict = SealedSessions::Verdict;

namespace {

constexpr Duration retryDelay = seconds(0.001); // keeps a socket that fails at once from using a whole core

constexpr int refusalsThatCount = 3; // a single one may be about one peer

// What a Mac returns without the permission for the local network, and what a firewall's rule or a missing way does.
bool isRefusal(int sendResult) {
    return sendResult == -EHOSTUNREACH || sendResult == -ENETUNREACH || sendResult == -EPERM || sendResult == -EACCES;
}

bool sameAddress(const PeerAddress& one, const PeerAddress& other) {
    return one.length == other.length && std::memcmp(one.storage.data(), other.storage.data(), one.length) == 0;
}

UDPError err(std::string_view call, int result) {
    const int code = -result;
    return {code, std::string(call) + ": " + std::generic_category().message(code)};
}

} // namespace

UDPServer::UDPServer(Runtime& runtime, DatagramSockets& sockets, std::uint16_t port)
    : port(port), runtime(runtime), sockets(sockets), peersLock(runtime) {}

UDPServer::~UDPServer() {
    end();
}

void UDPServer::useSeals(Secrets& secrets) {
    const Lock lock(peersLock);
    seals.emplace(secrets);
}

void UDPServer::setKeys(const std::vector<PairingKey>& keys) {
    const Lock lock(peersLock);
    if (seals) seals->setKeys(keys);
}

void UDPServer::letOnlyPairedIn(bool on) {
    const Lock lock(peersLock);
    if (seals) seals->letOnlyPairedIn(on);
}

std::expected<void, UDPError> UDPServer::start() {
    const int opened = sockets.open();
    if (opened < 0) return std::unexpected(err("socket", opened));
    // Failures are ignored: the socket still serves IPv6 clients.
    sockets.setReuseAddress(opened);
    sockets.setDualStack(opened);
    if (const int result = sockets.bind(opened, port); result < 0) {
        sockets.close(opened);
        return std::unexpected(err("bind", result));
    }
    fd = opened; // before the thread starts: it may answer its first datagram at once
    running = true;
    receiveThread = runtime.startThread("udp-receive", [this] { receiveLoop(); });
    return {};
}

void UDPServer::end() {
    running = false;
    if (fd < 0) return;
    // The descriptor is closed last. Closed earlier, its number could belong to another socket while the thread still
    // receives from it.
    sockets.shutDown(fd);
    receiveThread.reset();
    sockets.close(fd.exchange(-1));
}

void UDPServer::receiveLoop() {
    std::array<std::uint8_t, maxDatagram> buffer{};
    PeerAddress from;
    while (running) {
        const int received = sockets.receive(fd, buffer, from);
        if (received > 0) {
            handleDatagram(ByteView(buffer).first(static_cast<std::size_t>(received)), from);
        } else if (received < 0 && running) {
            runtime.sleepFor(retryDelay);
        }
    }
}

void UDPServer::handleDatagram(ByteView bytes, const PeerAddress& from) {
    const TimePoint arrived = runtime.now();
    if (isFromReceiver(bytes)) return;
    namePeer(from);
    if (peerIsSelf) return;
    heard = true;
    SealedSessions::Judged judged;
    std::optional<Ownership> ownership;
    {
        const Lock lock(peersLock);
        judged = judge(bytes, arrived);
        if (judged.verdict == Verdict::counts) ownership = peers.admit(judged.message, peer, arrived, judged.by);
        displaced = peers.displaced();
    }
    if (judged.verdict == Verdict::opening) return answerOpening(judged.message);
    if (judged.verdict == Verdict::stranger) return noteStranger();
    if (judged.verdict == Verdict::dropped) return;
    if (!displaced.empty() && onTakeOver) onTakeOver(peer.ip, displaced);
    if (!ownership) {
        refuse();
    } else if (onDatagram) {
        onDatagram(judged.message, {.key = peer.key, .ownership = *ownership, .arrived = arrived});
    }
}

SealedSessions::Judged UDPServer::judge(ByteView bytes, TimePoint arrived) {
    if (seals) return seals->judge(bytes, peer.key, arrived);
    return {.verdict = Verdict::counts, .message = bytes, .by = std::nullopt};
}

// The answer goes to an address that may be forged, like a refusal.
void UDPServer::answerOpening(ByteView answer) {
    if (!refusals.allows(peer.ip, runtime.now())) return;
    sendTo(peer.address, answer);
    refusals.count(peer.ip, runtime.now());
}

void UDPServer::noteStranger() {
    if (strangerIPs.size() >= maxStrangers || !strangerIPs.insert(peer.ip).second) return;
    strangerCount = strangerIPs.size();
    if (onStranger) onStranger();
}

void UDPServer::refuse() {
    if (!refusals.allows(peer.ip, runtime.now())) return;
    send(busyMessage(), peer.key);
    refusals.count(peer.ip, runtime.now());
}

void UDPServer::namePeer(const PeerAddress& from) {
    const bool isSame = !peer.key.empty() && sameAddress(peer.address, from);
    peer.address = from; // the same peer may have spoken to another address of this computer
    if (isSame) return;
    std::string& portText = peer.key; // reuses the key's storage
    sockets.name(from, peer.ip, portText);
    peer.key.insert(0, 1, ':').insert(0, peer.ip);
    peerIsSelf = sockets.isOwnAddress(fd, from);
}

void UDPServer::send(ByteView bytes, std::string_view key) {
    if (fd < 0) return;
    const TimePoint now = runtime.now();
    PeerAddress to;
    seal::SealedDatagram space;
    {
        const Lock lock(peersLock);
        const PeerTable::Peer* const known = peers.find(key);
        if (known == nullptr) return;
        to = known->address;
        if (seals) bytes = seals->outgoing(bytes, key, now, space);
    }
    sendTo(to, bytes);
}

void UDPServer::broadcast(ByteView bytes) {
    if (fd < 0) return;
    const TimePoint now = runtime.now();
    PeerAddress to;
    seal::SealedDatagram space;
    {
        const Lock lock(peersLock);
        peers.forgetSilent(now);
        const PeerTable::Owner* const owner = peers.liveOwner(now);
        if (owner == nullptr) return;
        to = peers.find(owner->key)->address;
        if (seals) bytes = seals->outgoing(bytes, owner->key, now, space);
    }
    sendTo(to, bytes);
}

void UDPServer::sendTo(const PeerAddress& to, ByteView bytes) {
    if (bytes.empty()) return;
    const int result = sockets.send(fd, bytes, to);
    if (result < 0) ++unsent;
    if (isRefusal(result)) {
        countRefusal(result);
    } else {
        refusedInARow = 0;
    }
}

void UDPServer::countRefusal(int result) {
    if (!heard.exchange(false) || ++refusedInARow < refusalsThatCount) return;
    refusedInARow = 0;
    if (onSendingRefused) onSendingRefused(-result);
}

std::vector<std::string> UDPServer::connectedIPs() {
    const TimePoint now = runtime.now();
    std::vector<std::string> ips;
    {
        const Lock lock(peersLock);
        ips = peers.liveIPs(now);
    }
    std::ranges::sort(ips);
    const auto repeated = std::ranges::unique(ips);
    ips.erase(repeated.begin(), repeated.end());
    return ips;
}

std::optional<std::string> UDPServer::ownerIP() {
    const TimePoint now = runtime.now();
    const Lock lock(peersLock);
    const PeerTable::Owner* const owner = peers.liveOwner(now);
    if (owner == nullptr) return std::nullopt;
    return peers.find(owner->key)->ip;
}

std::optional<std::string> UDPServer::liveOwnerKey() {
    const TimePoint now = runtime.now();
    const Lock lock(peersLock);
    const PeerTable::Owner* const owner = peers.liveOwner(now);
    if (owner == nullptr) return std::nullopt;
    return owner->key;
}

std::optional<Ownership> UDPServer::ownership() {
    const TimePoint now = runtime.now();
    const Lock lock(peersLock);
    const PeerTable::Owner* const owner = peers.liveOwner(now);
    if (owner == nullptr) return std::nullopt;
    return owner->ownership;
}

std::optional<SealedSessions::Loss> UDPServer::ownersLoss() {
    const TimePoint now = runtime.now();
    const Lock lock(peersLock);
    const PeerTable::Owner* const owner = peers.liveOwner(now);
    if (owner == nullptr || !seals) return std::nullopt;
    return seals->lossFrom(owner->key);
}

std::vector<TimePoint> UDPServer::lastUsesOfKeys() {
    const Lock lock(peersLock);
    return seals ? seals->lastUses() : std::vector<TimePoint>{};
}

} // namespace lumbrine
