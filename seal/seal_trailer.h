// The trailer behind a sealed message: 16 bytes that tell which datagram of its sender it is, and that nobody without
// the key has made or changed it. docs/protocol.md has every byte.
#pragma once

#include "base/bytes.h"
#include "platform/api/secrets.h"
#include "platform/api/time.h"

#include <array>
#include <cstdint>
#include <optional>

namespace lumbrine::seal {

inline constexpr std::size_t trailerSize = 16;
inline constexpr std::size_t maxMessage = 2048;

enum class Direction : std::uint8_t { toReceiver = 0, toClient = 1 };

// The 32-bit sequence number of a datagram.
struct Sequence {
    static constexpr std::uint32_t maxCount = (1U << 22) - 1;
    static constexpr std::uint32_t timeSteps = 1U << 10;
    static constexpr Duration timeStep = seconds(0.125);

    std::uint32_t count = 0; // 22 bits: 1 for the first datagram of a session and direction; 0 outside of sessions
    std::uint32_t time = 0;  // 10 bits: the sender's clock in eighths of a second, modulo 1024

    static Sequence at(TimePoint now, std::uint32_t count) {
        const auto steps = now.time_since_epoch() / timeStep;
        return {.count = count, .time = static_cast<std::uint32_t>(steps) & (timeSteps - 1)};
    }

    std::uint32_t word() const { return count << 10 | time; }
    static Sequence of(std::uint32_t word) { return {.count = word >> 10, .time = word & (timeSteps - 1)}; }

    bool operator==(const Sequence&) const = default;
};

using Seal = std::array<std::uint8_t, 8>;

struct Trailer {
    std::uint8_t keyNumber = 0;
    Sequence sequence;
    Seal seal{};
};

// A datagram that ends like a sealed one. Only the seal tells whether it is one: see `isRight`.
struct Sealed {
    ByteView message;
    Trailer trailer;
};

// Absent when the datagram is too short for a message of two bytes with a trailer, or has no mark in its place.
std::optional<Sealed> splitTrailer(ByteView datagram);

// Without the trailer, where there is one.
ByteView messageOf(ByteView datagram);

Seal sealOf(KeyedHash& key, Direction direction, std::uint64_t token, Sequence sequence, ByteView message);

// Takes the same time however much of a guessed seal is right.
bool isRight(const Sealed& sealed, KeyedHash& key, Direction direction, std::uint64_t token);

// A sealed datagram, without allocation.
class SealedDatagram {
public:
    // Precondition: the message has at most maxMessage bytes.
    void make(ByteView message, KeyedHash& key, std::uint8_t keyNumber, Direction direction, std::uint64_t token,
              Sequence sequence);

    ByteView bytes() const { return ByteView(storage).first(size); }

private:
    std::array<std::uint8_t, maxMessage + trailerSize> storage; // the first `size` bytes are set
    std::size_t size = 0;
};

} // namespace lumbrine::seal
