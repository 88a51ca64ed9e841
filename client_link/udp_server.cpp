#include "client_link/udp_server.h"

#include "base/big_endian.h"
#include "client_link/protocol_version.h"
#include "client_link/state_messages.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <system_error>
#include <utility>

namespace lumbrine {

namespace {

constexpr std::uint8_t hello = 0x00;
constexpr std::uint8_t takeOver = 0x25;

constexpr Duration retryDelay = seconds(0.001); // keeps a socket that fails at once from using a whole core

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

bool sameAddress(const PeerAddress& one, const PeerAddress& other) {
    return one.length == other.length && std::memcmp(one.storage.data(), other.storage.data(), one.length) == 0;
}

UDPError err(std::string_view call, int result) {
    const int code = -result;
    return {code, std::string(call) + ": " + std::generic_category().message(code)};
}

} // namespace

UDPServer::UDPServer(Runtime& rt, DatagramSockets& datagramSockets, std::uint16_t portToBind)
    : port(portToBind), runtime(rt), sockets(datagramSockets), clientLock(rt) {}

UDPServer::~UDPServer() {
    end();
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
    if (isFromReceiver(bytes)) return;
    namePeer(from);
    if (peer.isSelf) return;
    const TimePoint now = runtime.now();
    if (!deliverable(bytes, from, now)) {
        if (refusals.allows(peer.ip, now)) send(busyMessage(), peer.key);
        return;
    }
    if (onDatagram) onDatagram(bytes, peer.key);
}

void UDPServer::namePeer(const PeerAddress& from) {
    if (!peer.key.empty() && sameAddress(peer.addr, from)) return;
    peer.addr = from;
    std::string& portText = peer.key; // reuses the key's storage
    sockets.name(from, peer.ip, portText);
    peer.key.insert(0, 1, ':').insert(0, peer.ip);
    peer.isSelf = sockets.isOwnAddress(fd, from);
}

// Records the sender and decides who is the owner. Returns true when the owner is the sender.
bool UDPServer::deliverable(ByteView bytes, const PeerAddress& from, TimePoint now) {
    const Lock lock(clientLock);
    const Client& sender = noteClientLocked(bytes, from, now);
    if (ownerKey && *ownerKey == peer.key) return true;
    if (!ownerLiveLocked(now)) {
        ownerKey = peer.key;
        return true;
    }
    const auto owner = clients.find(*ownerKey);
    // The same token at another address is the same device after an app restart or a change of network.
    const bool sameDevice = sender.token && sender.token == owner->second.token;
    if (!sameDevice && !hasHeader(bytes, takeOver)) return false;
    if (sameDevice) clients.erase(owner);
    ownerKey = peer.key;
    return true;
}

UDPServer::Client& UDPServer::noteClientLocked(ByteView bytes, const PeerAddress& from, TimePoint now) {
    auto record = clients.find(peer.key);
    if (record == clients.end()) {
        if (clients.size() >= maxClients) makeRoomLocked(now);
        record = clients.try_emplace(peer.key).first;
        record->second.ip = peer.ip;
    }
    Client& client = record->second;
    client.addr = from;
    client.lastSeen = now;
    if (const auto token = announcedToken(bytes)) client.token = token;
    return client;
}

void UDPServer::makeRoomLocked(TimePoint now) {
    std::erase_if(clients, [&](const auto& entry) { return !isLive(entry.second, now); });
    if (clients.size() < maxClients) return;

    // A quarter at once, so that a flood pays for this search once in 256 new peers.
    std::vector<Clients::iterator> candidates;
    candidates.reserve(clients.size());
    for (auto record = clients.begin(); record != clients.end(); ++record)
        if (record->first != ownerKey) candidates.push_back(record);
    const auto forgotten = candidates.begin() + maxClients / 4;
    std::ranges::nth_element(candidates, forgotten, {}, [](const auto& record) { return record->second.lastSeen; });
    for (auto candidate = candidates.begin(); candidate != forgotten; ++candidate)
        clients.erase(*candidate);
}

bool UDPServer::ownerLiveLocked(TimePoint now) {
    if (!ownerKey) return false;
    const auto owner = clients.find(*ownerKey);
    if (owner != clients.end() && isLive(owner->second, now)) return true;
    ownerKey.reset();
    return false;
}

void UDPServer::send(ByteView bytes, std::string_view key) {
    if (fd < 0) return;
    PeerAddress to;
    {
        const Lock lock(clientLock);
        const auto client = clients.find(key);
        if (client == clients.end()) return;
        to = client->second.addr;
    }
    sockets.send(fd, bytes, to);
}

void UDPServer::broadcast(ByteView bytes) {
    if (fd < 0) return;
    const TimePoint now = runtime.now();
    PeerAddress to;
    {
        const Lock lock(clientLock);
        std::erase_if(clients, [&](const auto& entry) { return !isLive(entry.second, now); });
        if (!ownerLiveLocked(now)) return;
        to = clients.find(*ownerKey)->second.addr;
    }
    sockets.send(fd, bytes, to);
}

std::vector<std::string> UDPServer::connectedIPs() {
    const TimePoint now = runtime.now();
    std::vector<std::string> ips;
    {
        const Lock lock(clientLock);
        for (const auto& [key, client] : clients)
            if (isLive(client, now)) ips.push_back(client.ip);
    }
    std::ranges::sort(ips);
    const auto repeated = std::ranges::unique(ips);
    ips.erase(repeated.begin(), repeated.end());
    return ips;
}

std::optional<std::string> UDPServer::ownerIP() {
    const TimePoint now = runtime.now();
    const Lock lock(clientLock);
    if (!ownerLiveLocked(now)) return std::nullopt;
    return clients.find(*ownerKey)->second.ip;
}

std::optional<std::string> UDPServer::liveOwnerKey() {
    const TimePoint now = runtime.now();
    const Lock lock(clientLock);
    if (!ownerLiveLocked(now)) return std::nullopt;
    return ownerKey;
}

} // namespace lumbrine
