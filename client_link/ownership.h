// Which client something comes from, and in which ownership.
#pragma once

#include "platform/api/time.h"

#include <compare>
#include <cstdint>
#include <string_view>

namespace lumbrine {

// A period in which one device is in control. Each change of the device makes the number larger, so that A, B and A
// again are three ownerships. A device keeps its ownership when its address changes, and through a silence in which no
// other device takes control.
struct Ownership {
    std::uint64_t number = 0;
    bool isNewcomers = false; // the device has not been in control before, as far as is remembered

    friend auto operator<=>(const Ownership&, const Ownership&) = default;
};

// Whose wish something is, and since when.
struct Asked {
    Ownership owner;
    TimePoint at;
};

// The device that sealed a datagram.
struct SealedBy {
    std::uint64_t token = 0;
    std::uint8_t keyNumber = 0;

    friend bool operator==(const SealedBy&, const SealedBy&) = default;
};

// The sender of one of the owner's datagrams.
struct Sender {
    std::string_view key; // "host:port", to answer to
    Ownership ownership;
    TimePoint arrived; // when the receive thread got the datagram, however late anybody handles it

    Asked asked() const { return {.owner = ownership, .at = arrived}; }
};

} // namespace lumbrine
