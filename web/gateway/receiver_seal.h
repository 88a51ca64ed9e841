// The seal between the gateway and the receiver, for one browser. The page knows nothing of it.
#pragma once

#include "seal/client_seal.h"

#include <optional>

namespace lumbrine::web {

// One thread at a time.
class ReceiverSeal {
public:
    explicit ReceiverSeal(Secrets& secrets) : secrets(secrets) {}

    // The receiver's key; without one, nothing is sealed and everything counts. Another key than before ends the
    // session, and the page's next hello opens one with the new key. The same key changes nothing.
    void use(const std::optional<PairingKey>& key);

    // The datagram to send for the page's message. Valid until the next call.
    ByteView outgoing(ByteView message, TimePoint now);

    struct Incoming {
        std::optional<ByteView> message; // for the page
        ByteView reply;                  // to be sent to the receiver; empty for nothing. Valid until the next call.
    };
    Incoming incoming(ByteView datagram, TimePoint now);

private:
    Secrets& secrets;
    std::optional<PairingKey> inUse;
    std::optional<seal::ClientSeal> client;
};

} // namespace lumbrine::web
