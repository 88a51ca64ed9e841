// Secrets for tests: the same seed gives the same random numbers and hashes on every system. The hash is quick and
// tells keys and texts apart, but keeps no secret from anybody who tries.
#pragma once

#include "platform/api/secrets.h"
#include "platform/virtual/split_mix.h"

#include <cstdint>

namespace lumbrine {

class ToyHash : public KeyedHash {
public:
    explicit ToyHash(ByteView key) { absorb(keyed, key); }

    Hash of(ByteView first, ByteView second) override {
        std::uint64_t state = keyed;
        absorb(state, first);
        absorb(state, second);
        Hash hash;
        for (std::uint8_t& byte : hash)
            byte = static_cast<std::uint8_t>(nextSplitMix(state));
        return hash;
    }

private:
    static void absorb(std::uint64_t& state, ByteView bytes) {
        for (const std::uint8_t byte : bytes) {
            state ^= byte;
            state = nextSplitMix(state);
        }
    }

    std::uint64_t keyed = 1;
};

// One thread at a time.
class ToySecrets : public Secrets {
public:
    explicit ToySecrets(std::uint64_t seed = 1) : state(seed) {}

    void fillRandom(std::span<std::uint8_t> bytes) override {
        for (std::uint8_t& byte : bytes)
            byte = static_cast<std::uint8_t>(nextSplitMix(state));
    }
    std::unique_ptr<KeyedHash> keyedHash(ByteView key) override { return std::make_unique<ToyHash>(key); }

private:
    std::uint64_t state;
};

} // namespace lumbrine
