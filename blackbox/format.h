// The bytes of a recording: a header, then a ring of records. docs/blackbox.md has every byte.
//
// All numbers are little-endian, which is the byte order of every computer that the receiver is built for. A record is
// a whole number of 64-bit words, because words are what the writer stores.
#pragma once

#include "base/bytes.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

namespace lumbrine::blackbox {

static_assert(std::endian::native == std::endian::little);

inline constexpr std::size_t wordSize = 8;

// The file header has a page to itself, so that a ring of whole pages follows it.
inline constexpr std::size_t headerSize = 4096;
inline constexpr std::uint64_t magic = 0x584F424B43414C42; // "BLACKBOX" in the file
inline constexpr std::uint64_t version = 1;

inline constexpr std::size_t leastRing = std::size_t{1} << 16;
inline constexpr std::size_t largestRing = std::size_t{1} << 30;

// A record's own header: checksum, position, time, then these in one word: length of the payload (16 bits), kind (8),
// channel (8), thread (32).
inline constexpr std::size_t recordHeaderSize = 32;
inline constexpr std::size_t largestPayload = 4064; // with the header, one page

enum class Kind : std::uint8_t {
    anchor = 1,      // AnchorHead, text: program and computer; the channel is an AnchorCause
    log = 2,         // text: a line of the log
    fact = 3,        // text: what the receiver asked its computer, and the answer ("QV_PORT=52700")
    datagramIn = 4,  // DatagramHead, bytes
    datagramOut = 5, // DatagramHead, bytes
    socket = 6,      // SocketHead; the channel is a SocketEvent
    midiIn = 7,      // bytes of one packet; the channel is the surface, from 0
    midiOut = 8,     // ResultHead, bytes of one packet; the channel is the surface
    midiPort = 9,    // ResultHead, text: name; the channel is a PortEvent
    stream = 10,     // StreamHead, text: peer; the channel numbers the connection
    streamIn = 11,   // bytes; the channel numbers the connection
    streamOut = 12,  // bytes; the channel numbers the connection
    screen = 13,     // ScreenHead, text; the channel is a ScreenEvent
    announced = 14,  // text: the name under which the service is announced; empty when it is not
};
inline constexpr std::uint8_t lastKind = 14;

enum class AnchorCause : std::uint8_t { periodic = 0, programBegan = 1, programEnded = 2 };
enum class SocketEvent : std::uint8_t { opened = 0, bound = 1, receiveFailed = 2, closed = 3, ownAddress = 4 };
enum class PortEvent : std::uint8_t { source = 0, destination = 1, returned = 2, serviceLost = 3, serviceThere = 4 };
enum class StreamEvent : std::uint32_t { connected = 0, receiveEnded = 1, sendFailed = 2, closed = 3 };
enum class ScreenEvent : std::uint8_t { trust = 0, application = 1, read = 2, pressed = 3 };

// A peer on the network: its IPv6 address, which for IPv4 is the mapped one, and its port.
struct NumericAddress {
    std::array<std::uint8_t, 16> host{};
    std::uint16_t port = 0;

    bool operator==(const NumericAddress&) const = default;
};

// How payloads begin. A result that is negative is the system's error number; MIDI statuses are the system's own.
struct AnchorHead {
    std::int64_t wallTime; // nanoseconds since 1970 (UTC), at the record's time
    std::uint32_t process;
    std::uint32_t reserved = 0;
};
struct DatagramHead {
    NumericAddress peer;
    std::uint16_t reserved = 0;
    std::int32_t result = 0; // 0: the bytes went or came
};
struct SocketHead {
    std::int32_t result;
    std::uint32_t port;
};
struct ResultHead {
    std::int32_t result;
};
struct StreamHead {
    std::int32_t result;
    StreamEvent event;
};
struct ScreenHead {
    std::int32_t result;
    std::uint32_t element; // numbered as the receiver got them, from 1
};

// Over words, one after the other. Each step is a bijection of the sum for a given word, and of the word for a given
// sum: two sequences that differ in one word only never have the same sum.
class Checksum {
public:
    explicit Checksum(std::uint64_t salt) : sum(salt) {}

    void add(std::uint64_t word) { sum = std::rotl((sum ^ word) * 0x9E3779B97F4A7C15, 29); }
    std::uint64_t value() const { return sum ^ sum >> 32; }

private:
    std::uint64_t sum;
};

constexpr std::size_t paddedSize(std::size_t payload) {
    return recordHeaderSize + (payload + wordSize - 1) / wordSize * wordSize;
}

// The bytes of a plain value, as a part of a payload. The value has to outlive the view.
template <typename Value>
ByteView bytesOf(const Value& value) {
    static_assert(std::is_trivially_copyable_v<Value> && std::has_unique_object_representations_v<Value>);
    return {reinterpret_cast<const std::uint8_t*>(&value), sizeof value};
}

inline ByteView textBytes(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

} // namespace lumbrine::blackbox
