#include "seal/session_key.h"

#include "base/big_endian.h"

#include <algorithm>

namespace lumbrine::seal {

namespace {

// The first byte of what a pairing key hashes. Seals begin with their direction, 0 or 1.
constexpr std::uint8_t forSession = 2;
constexpr std::uint8_t forNumber = 3;

constexpr std::uint8_t version = 0x01;
constexpr std::uint8_t hello = 0x00;
constexpr std::uint8_t session = 0x7E;
constexpr std::size_t tokenAt = 2;

bool begins(ByteView message, std::uint8_t type) {
    return message.size() >= 2 && message[0] == version && message[1] == type;
}

Half halfAt(ByteView message, std::size_t offset) {
    Half half;
    std::ranges::copy(message.subspan(offset, half.size()), half.begin());
    return half;
}

} // namespace

std::unique_ptr<KeyedHash> hashOf(Secrets& secrets, const PairingKey& key) {
    return secrets.keyedHash(key.bits());
}

std::uint8_t numberOf(KeyedHash& pairing) {
    const std::array label{forNumber};
    return pairing.of(label, {})[0];
}

std::unique_ptr<KeyedHash> sessionHash(Secrets& secrets, KeyedHash& pairing, const SessionName& name) {
    std::array<std::uint8_t, 25> text{forSession};
    writeBigEndian64(text, 1, name.token);
    std::ranges::copy(name.client, text.begin() + 9);
    std::ranges::copy(name.receiver, text.begin() + 17);
    return secrets.keyedHash(pairing.of(text, {}));
}

std::optional<std::uint64_t> tokenOfHello(ByteView message) {
    if (message.size() < helloSize || !begins(message, hello)) return std::nullopt;
    const std::uint64_t token = readBigEndian64(message, tokenAt);
    if (token == 0) return std::nullopt;
    return token;
}

std::array<std::uint8_t, openingSize> openingMessage(std::uint64_t token, const Half& client) {
    std::array<std::uint8_t, openingSize> message{version, hello};
    writeBigEndian64(message, tokenAt, token);
    std::ranges::copy(client, message.begin() + helloSize);
    return message;
}

std::optional<Half> clientHalfOf(ByteView opening) {
    if (opening.size() != openingSize || !begins(opening, hello)) return std::nullopt;
    return halfAt(opening, helloSize);
}

std::array<std::uint8_t, sessionSize> sessionMessage(const Half& client, const Half& receiver) {
    std::array<std::uint8_t, sessionSize> message{version, session};
    std::ranges::copy(client, message.begin() + 2);
    std::ranges::copy(receiver, message.begin() + 10);
    return message;
}

std::optional<Halves> halvesOf(ByteView message) {
    if (message.size() != sessionSize || !begins(message, session)) return std::nullopt;
    return Halves{.client = halfAt(message, 2), .receiver = halfAt(message, 10)};
}

} // namespace lumbrine::seal
