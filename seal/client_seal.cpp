#include "seal/client_seal.h"

#include <algorithm>

namespace lumbrine::seal {

ClientSeal::ClientSeal(Secrets& secrets, const PairingKey& key)
    : secrets(secrets), pairing(hashOf(secrets, key)), keyNumber(numberOf(*pairing)) {}

ByteView ClientSeal::outgoing(ByteView message, TimePoint now) {
    if (const auto ownToken = tokenOfHello(message); ownToken && message.size() < openingSize) {
        if (*ownToken != token) session.reset();
        token = *ownToken;
        if (wantsSession(now)) return opening(token, now);
    }
    if (!session || message.size() > maxMessage) return message;
    return sealed(message, now);
}

bool ClientSeal::wantsSession(TimePoint now) const {
    return !session || now - lastRight >= patience || std::max(sent, window.newestCount()) >= renewal;
}

ByteView ClientSeal::opening(std::uint64_t ownToken, TimePoint now) {
    secrets.fillRandom(asked.emplace());
    out.make(openingMessage(ownToken, *asked), *pairing, keyNumber, Direction::toReceiver, ownToken,
             Sequence::at(now, 0));
    return out.bytes();
}

ByteView ClientSeal::sealed(ByteView message, TimePoint now) {
    if (sent >= Sequence::maxCount) return {}; // a count must never come twice under one key
    out.make(message, *session, keyNumber, Direction::toReceiver, token, Sequence::at(now, ++sent));
    return out.bytes();
}

ClientSeal::Incoming ClientSeal::incoming(ByteView datagram, TimePoint now) {
    auto parts = splitTrailer(datagram);
    if (parts && parts->trailer.keyNumber != keyNumber) parts.reset(); // the seal does not cover it
    if (parts && parts->trailer.sequence.count == 0 && asked && isRight(*parts, *pairing, Direction::toClient, token))
        return begin(*parts, now);
    if (!session) return {.message = datagram, .reply = {}};
    if (!parts || !isRight(*parts, *session, Direction::toClient, token)) return {};
    if (!window.admit(parts->trailer.sequence, now)) return {};
    lastRight = now;
    return {.message = parts->message, .reply = {}};
}

// The hello in the new session proves to the receiver that this is no recording.
ClientSeal::Incoming ClientSeal::begin(const Sealed& datagram, TimePoint now) {
    const auto halves = halvesOf(datagram.message);
    if (!halves || halves->client != *asked) return {};
    asked.reset();
    session = sessionHash(secrets, *pairing, {.token = token, .client = halves->client, .receiver = halves->receiver});
    sent = 0;
    window = {};
    lastRight = now;
    const auto hello = openingMessage(token, {});
    return {.message = {}, .reply = sealed(ByteView(hello).first(helloSize), now)};
}

} // namespace lumbrine::seal
