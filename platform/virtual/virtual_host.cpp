#include "platform/virtual/virtual_host.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace lumbrine {

namespace {

constexpr std::size_t socketCapacity = 4096;   // datagrams; more are lost, as with a full receive buffer
constexpr std::size_t largestDatagram = 65507; // bytes of UDP payload: 65535 less the IPv4 and UDP headers

} // namespace

VirtualNetwork::Host::Host(VirtualNetwork& network, std::string address)
    : network(network), addresses{std::move(address)} {}

bool VirtualNetwork::Host::hasAddress(const std::string& address) const {
    return std::ranges::find(addresses, address) != addresses.end();
}

void VirtualNetwork::Host::fail(Call call, int error) {
    failures[static_cast<std::size_t>(call)] = error;
}

std::shared_ptr<VirtualNetwork::Host::Socket> VirtualNetwork::Host::socket(int fd) const {
    const auto found = sockets.find(fd);
    return found == sockets.end() ? nullptr : found->second;
}

int VirtualNetwork::Host::open() {
    if (const int error = injected(Call::open); error != 0) return error;
    auto created = std::make_shared<Socket>();
    created->changed = network.runtime.makeSignal();
    sockets[++network.lastDescriptor] = std::move(created);
    return network.lastDescriptor;
}

int VirtualNetwork::Host::setReuseAddress(int fd) {
    return socket(fd) ? 0 : -EBADF;
}

int VirtualNetwork::Host::setDualStack(int fd) {
    return socket(fd) ? 0 : -EBADF;
}

bool VirtualNetwork::Host::isTaken(std::uint16_t port) const {
    return std::ranges::any_of(sockets, [&](const auto& entry) { return entry.second->port == port; });
}

std::uint16_t VirtualNetwork::Host::freePort() {
    // The dynamic ports are 49152-65535 (RFC 6335, section 6).
    while (isTaken(nextPort))
        nextPort = nextPort == 65535 ? 49152 : static_cast<std::uint16_t>(nextPort + 1);
    return nextPort++;
}

int VirtualNetwork::Host::bind(int fd, std::uint16_t port) {
    if (const int error = injected(Call::bind); error != 0) return error;
    const auto bound = socket(fd);
    if (!bound) return -EBADF;
    if (bound->port != 0) return -EINVAL;
    if (port != 0 && isTaken(port)) return -EADDRINUSE;
    bound->port = port != 0 ? port : freePort();
    return 0;
}

int VirtualNetwork::Host::localPort(int fd) {
    const auto bound = socket(fd);
    return bound ? bound->port : -EBADF;
}

bool VirtualNetwork::Host::isOwnAddress(int fd, const PeerAddress& peer) {
    const auto known = unpack(peer);
    return known && known->port == localPort(fd) && (hasAddress(known->host) || isLoopback(known->host));
}

int VirtualNetwork::Host::receive(int fd, std::span<std::uint8_t> buffer, PeerAddress& from) {
    network.runtime.yield("a receive");
    if (const int error = injected(Call::receive); error != 0) return error;
    const auto receiver = socket(fd);
    if (!receiver) return -EBADF;
    for (;;) {
        if (receiver->ended) return -ENOTCONN;
        if (const auto datagram = receiver->datagrams.popDue(network.runtime.now())) {
            from = datagram->from;
            const std::size_t size = std::min(buffer.size(), datagram->bytes.size());
            std::copy_n(datagram->bytes.begin(), size, buffer.begin());
            return static_cast<int>(size);
        }
        const auto arrival = receiver->datagrams.nextDue();
        const bool notified = receiver->changed->wait("a datagram", arrival);
        if (!notified && (!arrival || network.runtime.now() < *arrival)) return -EINTR; // the runtime is ending
    }
}

int VirtualNetwork::Host::send(int fd, ByteView bytes, const PeerAddress& to) {
    network.runtime.yield("a send");
    if (const int error = injected(Call::send); error != 0) return error;
    const auto sender = socket(fd);
    if (!sender) return -EBADF;
    if (bytes.size() > largestDatagram) return -EMSGSIZE;
    const auto peer = unpack(to);
    if (!peer || peer->port == 0) return -EINVAL;
    if (sender->port == 0) sender->port = freePort(); // as the system does for a socket that was not bound
    const bool toItself = isLoopback(peer->host);
    Host* const receiver = toItself ? this : network.find(peer->host);
    const std::string wanted = spokenTo(to);
    const std::string& from = toItself ? peer->host : hasAddress(wanted) ? wanted : addresses.front();
    if (receiver == this || (receiver != nullptr && reachable && receiver->reachable))
        network.carry({from, sender->port}, *receiver, *peer, bytes);
    // UDP reports success even if nobody receives the datagram.
    return static_cast<int>(bytes.size());
}

void VirtualNetwork::Host::arrive(TimePoint when, std::uint16_t port, const PeerAddress& from, ByteView bytes) {
    for (const auto& [fd, receiver] : sockets) {
        if (receiver->port != port || receiver->ended) continue;
        if (receiver->datagrams.size() >= socketCapacity) return;
        receiver->datagrams.push(when, Datagram{from, Bytes(bytes.begin(), bytes.end())});
        receiver->changed->notifyAll();
        return;
    }
}

void VirtualNetwork::Host::loseWhatIsUnderWay() {
    for (const auto& [fd, receiver] : sockets) {
        // Datagrams wait here from the moment they are sent; those whose time has come have arrived and stay.
        DeadlineHeap<TimePoint, Datagram> arrived;
        while (auto datagram = receiver->datagrams.popDue(network.runtime.now()))
            arrived.push(network.runtime.now(), *std::move(datagram));
        receiver->datagrams = std::move(arrived);
    }
}

void VirtualNetwork::Host::name(const PeerAddress& peer, std::string& host, std::string& port) {
    host.clear();
    port.clear();
    const auto known = unpack(peer);
    if (!known) return;
    host = known->host;
    port = std::to_string(known->port);
}

bool VirtualNetwork::Host::resolve(const std::string& host, std::uint16_t port, PeerAddress& peer) {
    const auto form = dualStackForm(host == "localhost" ? "127.0.0.1" : host);
    if (!form) return false;
    peer = pack({*form, port});
    return true;
}

void VirtualNetwork::Host::shutDown(int fd) {
    const auto ending = socket(fd);
    if (!ending) return;
    ending->ended = true;
    ending->changed->notifyAll();
}

void VirtualNetwork::Host::close(int fd) {
    shutDown(fd);
    sockets.erase(fd);
}

} // namespace lumbrine
