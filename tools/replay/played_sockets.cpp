#include "tools/replay/played_sockets.h"

#include "blackbox/payload.h"
#include "tools/blackbox/record_words.h"

#include <algorithm>
#include <cerrno>

namespace lumbrine::blackbox {

namespace {

bool isSocketEvent(const Record& record, SocketEvent event) {
    return record.kind == Kind::socket && record.channel == static_cast<std::uint8_t>(event);
}

Lane::Wanted socketEvents(SocketEvent event) {
    return [event](const Record& record) { return isSocketEvent(record, event); };
}

bool isArrival(const Record& record) {
    return record.kind == Kind::datagramIn || isSocketEvent(record, SocketEvent::receiveFailed);
}

int resultIn(const Record* record, int otherwise) {
    const auto head = record == nullptr ? std::nullopt : headOf<SocketHead>(*record);
    return head ? head->result : otherwise;
}

PeerAddress packed(const NumericAddress& address) {
    PeerAddress peer;
    std::ranges::copy(address.host, peer.storage.begin());
    peer.storage[16] = static_cast<std::uint8_t>(address.port >> 8);
    peer.storage[17] = static_cast<std::uint8_t>(address.port);
    peer.length = 18;
    return peer;
}

} // namespace

NumericAddress PlayedSockets::addressOf(const PeerAddress& peer) {
    NumericAddress address;
    std::copy_n(peer.storage.begin(), address.host.size(), address.host.begin());
    address.port = static_cast<std::uint16_t>(peer.storage[16] << 8 | peer.storage[17]);
    return address;
}

PlayedSockets::PlayedSockets(const std::vector<Record>& records, TapeClock& itsClock)
    : clock(itsClock), opened(records, socketEvents(SocketEvent::opened)),
      bound(records, socketEvents(SocketEvent::bound)), arrivals(records, isArrival),
      sent(records, [](const Record& record) { return record.kind == Kind::datagramOut; }) {
    const Record* last = nullptr;
    for (const Record& record : records) {
        if (record.kind == Kind::datagramIn) last = &record;
        if (last != nullptr && isSocketEvent(record, SocketEvent::ownAddress))
            if (const auto head = headOf<DatagramHead>(*last)) own.push_back(packed(head->peer));
    }
}

int PlayedSockets::open() {
    return resultIn(opened.take(), 3);
}

int PlayedSockets::bind(int, std::uint16_t port) {
    boundPort = port;
    return resultIn(bound.take(), 0);
}

bool PlayedSockets::isOwnAddress(int, const PeerAddress& address) {
    return std::ranges::any_of(own, [&](const PeerAddress& each) { return addressOf(each) == addressOf(address); });
}

int PlayedSockets::receive(int, std::span<std::uint8_t> buffer, PeerAddress& from) {
    const Record* const arrival = isShutDown ? nullptr : arrivals.take();
    if (arrival == nullptr) clock.waitForEnd();
    if (arrival == nullptr || !clock.waitFor(*arrival)) return -ENOTCONN;
    if (arrival->kind == Kind::socket) return resultIn(arrival, -EIO);
    const auto head = headOf<DatagramHead>(*arrival);
    if (!head) return 0;
    from = packed(head->peer);
    const ByteView bytes = behind<DatagramHead>(*arrival);
    const std::size_t size = std::min(bytes.size(), buffer.size());
    std::copy_n(bytes.begin(), size, buffer.begin());
    return static_cast<int>(size);
}

// What could not be sent cannot be sent again.
int PlayedSockets::send(int, ByteView bytes, const PeerAddress&) {
    const Record* const recorded = sent.take();
    const auto head = recorded == nullptr ? std::nullopt : headOf<DatagramHead>(*recorded);
    return head && head->result < 0 ? head->result : static_cast<int>(bytes.size());
}

// As a socket for IPv6 that also serves IPv4 names its peers.
void PlayedSockets::name(const PeerAddress& address, std::string& host, std::string& port) {
    const NumericAddress peer = addressOf(address);
    host = hostText(peer);
    port = std::to_string(peer.port);
    if (host.contains('.')) host.insert(0, "::ffff:");
}

void PlayedSockets::shutDown(int) {
    isShutDown = true;
    clock.end();
}

} // namespace lumbrine::blackbox
