// Random numbers that nobody can guess, and the keyed hash that seals datagrams.
#pragma once

#include "base/bytes.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>

namespace lumbrine {

using Hash = std::array<std::uint8_t, 32>;

// HMAC-SHA-256 with one key. One thread at a time.
class KeyedHash {
public:
    virtual ~KeyedHash() = default;

    // The hash of the two parts, one directly after the other. Fast: a datagram on its way to a fader waits for it.
    virtual Hash of(ByteView first, ByteView second) = 0;
};

class Secrets {
public:
    virtual ~Secrets() = default;

    // Any thread.
    virtual void fillRandom(std::span<std::uint8_t> bytes) = 0;
    virtual std::unique_ptr<KeyedHash> keyedHash(ByteView key) = 0;
};

} // namespace lumbrine
