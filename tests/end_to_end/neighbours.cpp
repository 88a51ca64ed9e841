#include "tests/end_to_end/neighbours.h"

#include "tests/interop/child_process.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/ip.h>
#include <netinet/udp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace lumbrine::end_to_end {

namespace {

constexpr std::uint32_t network = 0x0A090000; // 10.9.0.0/24
constexpr std::uint32_t ownAddress = network + 1;

// A pair of interfaces with nobody behind the other end.
void makeNetwork() {
    const std::vector<std::vector<std::string>> commands{
        {"ip", "link", "add", "near", "type", "veth", "peer", "name", "far"},
        {"ip", "address", "add", "10.9.0.1/24", "dev", "near"},
        {"ip", "link", "set", "near", "up"},
        {"ip", "link", "set", "far", "up"},
    };
    for (const auto& command : commands)
        if (const auto result = interop::runCommand(command); result.status != 0)
            throw std::runtime_error("no network without neighbours: " + result.output);
    // The forged datagrams come in by the loopback interface, where their senders cannot be.
    for (const char* interface : {"all", "lo"})
        std::ofstream("/proc/sys/net/ipv4/conf/" + std::string(interface) + "/rp_filter") << "0";
}

} // namespace

ForgedDatagrams::ForgedDatagrams() : fd(::socket(AF_INET, SOCK_RAW | SOCK_CLOEXEC, IPPROTO_RAW)) {
    if (fd < 0) throw std::runtime_error("no raw socket");
}

ForgedDatagrams::~ForgedDatagrams() {
    ::close(fd);
}

void ForgedDatagrams::send(UDPPlace from, UDPPlace to, ByteView datagram) {
    constexpr std::size_t headers = sizeof(iphdr) + sizeof(udphdr);
    iphdr ip{};
    ip.version = 4;
    ip.ihl = sizeof ip / 4;
    ip.ttl = 64;
    ip.protocol = IPPROTO_UDP;
    ip.tot_len = htons(static_cast<std::uint16_t>(headers + datagram.size()));
    ip.saddr = htonl(from.host);
    ip.daddr = htonl(to.host);
    udphdr udp{};
    udp.source = htons(from.port);
    udp.dest = htons(to.port);
    udp.len = htons(static_cast<std::uint16_t>(sizeof udp + datagram.size()));

    Bytes packet(headers);
    std::copy_n(reinterpret_cast<const std::uint8_t*>(&ip), sizeof ip, packet.begin());
    std::copy_n(reinterpret_cast<const std::uint8_t*>(&udp), sizeof udp, packet.begin() + sizeof ip);
    packet.insert(packet.end(), datagram.begin(), datagram.end());
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = ip.daddr;
    ::sendto(fd, packet.data(), packet.size(), 0, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

Neighbours::Neighbours() {
    makeNetwork();
}

Neighbours::~Neighbours() {
    interop::runCommand({"ip", "link", "delete", "near"});
}

void Neighbours::send(int neighbour, std::uint16_t port, ByteView datagram) {
    const std::uint32_t host = ownAddress + 1 + static_cast<std::uint32_t>(neighbour);
    datagrams.send({host, 50000}, {ownAddress, port}, datagram);
}

} // namespace lumbrine::end_to_end
