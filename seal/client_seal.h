// A client's end of sealed traffic. Before its receiver has shown that it understands, nothing but hellos is sealed and
// every answer counts, so that a receiver without seals or without the key serves the client as ever. From then on
// everything is sealed, and what is not sealed rightly is nobody's.
#pragma once

#include "platform/api/secrets.h"
#include "platform/api/time.h"
#include "seal/pairing_key.h"
#include "seal/seal_trailer.h"
#include "seal/sequence_window.h"
#include "seal/session_key.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace lumbrine::seal {

// One thread at a time. For one receiver; for another one make a new object.
class ClientSeal {
public:
    // A hello opens a new session when nothing sealed has come for this long: the receiver may have been restarted.
    static constexpr Duration patience = seconds(2.0);

    // So does one after this many datagrams in either direction, long before the counts run out.
    static constexpr std::uint32_t renewal = (Sequence::maxCount + 1) / 2;

    ClientSeal(Secrets& secrets, const PairingKey& key);

    // The datagram to send for a message. A hello has to have the device's token: others are not sealed. Valid until
    // the next call.
    ByteView outgoing(ByteView message, TimePoint now);

    struct Incoming {
        ByteView message; // for the client; empty when there is nothing for it
        ByteView reply;   // to be sent as it is; empty for nothing. Valid until the next call.
    };
    Incoming incoming(ByteView datagram, TimePoint now);

    bool inSession() const { return session != nullptr; }

    // Of the receiver's datagrams in this session.
    std::uint32_t received() const { return window.received(); }
    std::uint32_t lost() const { return window.lost(); }

private:
    ByteView sealed(ByteView message, TimePoint now);
    ByteView opening(std::uint64_t ownToken, TimePoint now);
    bool wantsSession(TimePoint now) const;
    Incoming begin(const Sealed& datagram, TimePoint now);

    Secrets& secrets;
    const std::unique_ptr<KeyedHash> pairing;
    const std::uint8_t keyNumber;
    std::uint64_t token = 0;
    std::optional<Half> asked; // of the newest opening, until it is answered
    std::unique_ptr<KeyedHash> session;
    std::uint32_t sent = 0; // in this session
    SequenceWindow window;
    TimePoint lastRight = distantPast;
    SealedDatagram out;
};

} // namespace lumbrine::seal
