// The keys that seal: the pairing key's own hash for what opens a session, and one of their own for each session, so
// that nothing recorded in one session is right in another.
#pragma once

#include "platform/api/secrets.h"
#include "seal/pairing_key.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

namespace lumbrine::seal {

using Half = std::array<std::uint8_t, 8>; // of a session's name; each end makes one of random numbers

std::unique_ptr<KeyedHash> hashOf(Secrets& secrets, const PairingKey& key);

// A number to find the key by, which both ends compute from the key.
std::uint8_t numberOf(KeyedHash& pairing);

struct SessionName {
    std::uint64_t token = 0;
    Half client{};
    Half receiver{};
};

std::unique_ptr<KeyedHash> sessionHash(Secrets& secrets, KeyedHash& pairing, const SessionName& name);

// The two messages that exist for seals alone. `Opening` is a Hello with eight bytes behind its token; `Session` is the
// receiver's answer. Both are sealed with the pairing key, at count 0.
inline constexpr std::size_t helloSize = 10; // with a token
inline constexpr std::size_t openingSize = 18;
inline constexpr std::size_t sessionSize = 18;

// The token of a hello of at least 10 bytes; absent for other messages and for token 0.
std::optional<std::uint64_t> tokenOfHello(ByteView message);

std::array<std::uint8_t, openingSize> openingMessage(std::uint64_t token, const Half& client);
std::optional<Half> clientHalfOf(ByteView opening); // absent unless it is an opening

std::array<std::uint8_t, sessionSize> sessionMessage(const Half& client, const Half& receiver);
struct Halves {
    Half client;
    Half receiver;
};
std::optional<Halves> halvesOf(ByteView session); // absent unless it is a session message

} // namespace lumbrine::seal
