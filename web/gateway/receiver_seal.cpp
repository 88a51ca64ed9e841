#include "web/gateway/receiver_seal.h"

namespace lumbrine::web {

void ReceiverSeal::use(const std::optional<PairingKey>& key) {
    if (key == inUse) return;
    inUse = key;
    client.reset();
    if (key) client.emplace(secrets, *key);
}

ByteView ReceiverSeal::outgoing(ByteView message, TimePoint now) {
    return client ? client->outgoing(message, now) : message;
}

ReceiverSeal::Incoming ReceiverSeal::incoming(ByteView datagram, TimePoint now) {
    if (!client) return {.message = datagram, .reply = {}};
    const auto [message, reply] = client->incoming(datagram, now);
    if (message.empty()) return {.message = std::nullopt, .reply = reply};
    return {.message = message, .reply = reply};
}

} // namespace lumbrine::web
