#include "model/mirror/client_endpoint.h"

#include <cassert>
#include <utility>

namespace lumbrine {

ClientEndpoint::ClientEndpoint(Runtime& rt, DatagramSockets& datagramSockets, ServiceAdvertiser& serviceAdvertiser,
                               const SystemInfo& systemInfo, Configuration configuration, Bilingual bilingual,
                               ActivityLog& activityLog)
    : port(configuration.port), runtime(rt), sockets(datagramSockets), advertiser(serviceAdvertiser),
      system(systemInfo), noBonjour(configuration.noBonjour), text(bilingual), log(activityLog) {}

void ClientEndpoint::startUDPAndBonjour(Handler handler) {
    assert(runtime.onMain());
    listen(std::move(handler));
    if (noBonjour) {
        log.appendLog(text("⚠️ Bonjour advertising off (QV_NO_BONJOUR experimental mode)",
                           "⚠️ Bonjour 広告なし（QV_NO_BONJOUR 実験モード）"));
    } else {
        advertise();
    }
}

void ClientEndpoint::listen(Handler handler) {
    udp = std::make_unique<UDPServer>(runtime, sockets, port);
    udp->onDatagram = std::move(handler);
    if (const auto started = udp->start()) {
        log.appendLog(text("✓ UDP listening on :", "✓ UDP 受信開始 :") + std::to_string(port));
    } else {
        log.appendLog(text("✗ UDP failed: ", "✗ UDP 失敗: ") + started.error().description);
    }
}

void ClientEndpoint::advertise() {
    const std::string name = system.computerName().value_or("Lumbrine Mac");
    bonjour = advertiser.publish({.domain = "local.", .type = "_lumbrine._udp.", .name = name, .port = port});
    log.appendLog(text("✓ Bonjour advertising: ", "✓ Bonjour 広告: ") + name);
}

// The server itself stays: its receive thread may be asking for it.
void ClientEndpoint::close() {
    if (udp) udp->end();
}

void ClientEndpoint::send(ByteView bytes, std::string_view key) {
    if (udp) udp->send(bytes, key);
}

void ClientEndpoint::broadcast(ByteView bytes) {
    if (udp) udp->broadcast(bytes);
}

std::vector<std::string> ClientEndpoint::connectedIPs() {
    return udp ? udp->connectedIPs() : std::vector<std::string>{};
}

std::optional<std::string> ClientEndpoint::ownerIP() {
    return udp ? udp->ownerIP() : std::nullopt;
}

std::optional<std::string> ClientEndpoint::liveOwnerKey() {
    return udp ? udp->liveOwnerKey() : std::nullopt;
}

} // namespace lumbrine
