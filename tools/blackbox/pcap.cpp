#include "tools/blackbox/pcap.h"

#include "base/big_endian.h"
#include "blackbox/payload.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace lumbrine::blackbox {

namespace {

using Host = decltype(NumericAddress::host);

constexpr std::uint16_t usualPort = 52700;
constexpr std::uint16_t rawIP = 101;
constexpr std::uint16_t privateUse = 147;
constexpr std::uint32_t network = 0; // the interfaces
constexpr std::uint32_t midi = 1;
constexpr std::uint8_t udp = 17;
constexpr std::size_t udpHeader = 8;

constexpr Host ownIPv4{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 192, 0, 2, 1};
constexpr Host ownIPv6{0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};

template <typename Number>
void put(Bytes& bytes, Number number) {
    append(bytes, bytesOf(number));
}

void pad(Bytes& bytes) {
    bytes.resize((bytes.size() + 3) / 4 * 4);
}

// Type, length, body, length: every block is so.
void putBlock(Bytes& file, std::uint32_t type, Bytes body) {
    pad(body);
    const auto length = static_cast<std::uint32_t>(body.size() + 12);
    put(file, type);
    put(file, length);
    append(file, body);
    put(file, length);
}

void putOption(Bytes& body, std::uint16_t code, ByteView value) {
    put(body, code);
    put(body, static_cast<std::uint16_t>(value.size()));
    append(body, value);
    pad(body);
}

void putInterface(Bytes& file, std::uint16_t linkType, std::string_view name) {
    constexpr std::uint16_t nameOption = 2;
    constexpr std::uint16_t resolutionOption = 9;
    constexpr std::uint8_t nanoseconds = 9;
    Bytes body;
    put(body, linkType);
    put(body, std::uint16_t{0});
    put(body, std::uint32_t{0}); // no limit to the length of a packet
    putOption(body, nameOption, textBytes(name));
    putOption(body, resolutionOption, {&nanoseconds, 1});
    putOption(body, 0, {});
    putBlock(file, 1, body);
}

void putPacket(Bytes& file, std::uint32_t interface, std::int64_t wall, ByteView packet) {
    const auto time = static_cast<std::uint64_t>(wall);
    const auto length = static_cast<std::uint32_t>(packet.size());
    Bytes body;
    put(body, interface);
    put(body, static_cast<std::uint32_t>(time >> 32));
    put(body, static_cast<std::uint32_t>(time));
    put(body, length);
    put(body, length);
    append(body, packet);
    putBlock(file, 6, body);
}

// The sum of the Internet protocols (RFC 1071).
std::uint16_t internetSum(ByteView bytes, std::uint32_t sum = 0) {
    for (std::size_t i = 0; i < bytes.size(); ++i)
        sum += i % 2 == 0 ? static_cast<std::uint32_t>(bytes[i]) << 8 : bytes[i];
    while (sum > 0xFFFF)
        sum = (sum & 0xFFFF) + (sum >> 16);
    return static_cast<std::uint16_t>(~sum);
}

void patch16(Bytes& bytes, std::size_t offset, std::uint16_t value) {
    bytes[offset] = static_cast<std::uint8_t>(value >> 8);
    bytes[offset + 1] = static_cast<std::uint8_t>(value);
}

bool isMapped(const Host& host) {
    return std::equal(ownIPv4.begin(), ownIPv4.begin() + 12, host.begin());
}

Bytes udpOf(const NumericAddress& from, const NumericAddress& to, ByteView message) {
    const auto size = static_cast<std::uint16_t>(udpHeader + message.size());
    Bytes datagram;
    appendBigEndian16(datagram, from.port);
    appendBigEndian16(datagram, to.port);
    appendBigEndian16(datagram, size);
    appendBigEndian16(datagram, 0);
    append(datagram, message);

    Bytes summed; // with the pseudo-header
    const std::size_t hidden = isMapped(from.host) ? 12 : 0;
    append(summed, ByteView(from.host).subspan(hidden));
    append(summed, ByteView(to.host).subspan(hidden));
    appendBigEndian16(summed, udp);
    appendBigEndian16(summed, size);
    append(summed, datagram);
    const std::uint16_t sum = internetSum(summed);
    patch16(datagram, 6, sum == 0 ? 0xFFFF : sum);
    return datagram;
}

Bytes ipOf(const NumericAddress& from, const NumericAddress& to, ByteView message) {
    const Bytes datagram = udpOf(from, to, message);
    Bytes packet;
    if (isMapped(from.host)) {
        packet = {0x45, 0};
        appendBigEndian16(packet, static_cast<std::uint16_t>(20 + datagram.size()));
        append(packet, Bytes{0, 0, 0x40, 0, 64, udp, 0, 0}); // not to be cut, 64 hops, the sum later
        append(packet, ByteView(from.host).subspan(12));
        append(packet, ByteView(to.host).subspan(12));
        patch16(packet, 10, internetSum(packet));
    } else {
        packet = {0x60, 0, 0, 0};
        appendBigEndian16(packet, static_cast<std::uint16_t>(datagram.size()));
        append(packet, Bytes{udp, 64});
        append(packet, from.host);
        append(packet, to.host);
    }
    append(packet, datagram);
    return packet;
}

void putRecord(Bytes& file, const TimedRecord& timed, std::uint16_t ownPort) {
    const Record& record = timed.record;
    if (record.kind == Kind::midiIn || record.kind == Kind::midiOut) {
        const bool isOut = record.kind == Kind::midiOut;
        if (isOut && record.payload.size() < sizeof(ResultHead)) return;
        Bytes packet{record.channel, static_cast<std::uint8_t>(isOut ? 1 : 0)};
        append(packet, isOut ? behind<ResultHead>(record) : record.payload);
        putPacket(file, midi, timed.wall, packet);
    }
    if (record.kind != Kind::datagramIn && record.kind != Kind::datagramOut) return;
    const auto head = headOf<DatagramHead>(record);
    if (!head || head->result < 0) return;
    const NumericAddress own{.host = isMapped(head->peer.host) ? ownIPv4 : ownIPv6, .port = ownPort};
    const bool isIn = record.kind == Kind::datagramIn;
    putPacket(file, network, timed.wall,
              ipOf(isIn ? head->peer : own, isIn ? own : head->peer, behind<DatagramHead>(record)));
}

} // namespace

Bytes pcapOf(const std::vector<TimedRecord>& records, std::uint16_t receiverPort) {
    constexpr std::uint32_t sectionHeader = 0x0A0D0D0A;
    Bytes body;
    put(body, std::uint32_t{0x1A2B3C4D}); // tells the byte order
    put(body, std::uint16_t{1});
    put(body, std::uint16_t{0});
    put(body, ~std::uint64_t{0}); // the length of the section is not told
    Bytes file;
    putBlock(file, sectionHeader, body);
    putInterface(file, rawIP, "network");
    putInterface(file, privateUse, "midi");
    for (const TimedRecord& timed : records)
        putRecord(file, timed, receiverPort);
    return file;
}

std::uint16_t receiverPortIn(const std::vector<TimedRecord>& records) {
    std::uint16_t port = usualPort;
    for (const TimedRecord& timed : records) {
        if (timed.record.kind != Kind::socket) continue;
        if (timed.record.channel != static_cast<std::uint8_t>(SocketEvent::bound)) continue;
        const auto head = headOf<SocketHead>(timed.record);
        if (head && head->result >= 0 && head->port != 0) port = static_cast<std::uint16_t>(head->port);
    }
    return port;
}

} // namespace lumbrine::blackbox
