// The vocabulary of the remote client: one struct for each message, and the parser from datagram to message.
//
// A datagram is the version byte 0x01, an opcode and a body (docs/protocol.md). Strips are surface strips as they stand
// in the datagram, 0-255; members are session track indices.
#pragma once

#include "base/bytes.h"
#include "base/fader_value.h"

#include <cstdint>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace lumbrine {

struct Hello {};
struct FaderMove {
    std::uint8_t strip;
    FaderValue value;
};
struct FaderTouch {
    std::uint8_t strip;
};
struct FaderRelease {
    std::uint8_t strip;
};
struct MutePress {
    std::uint8_t strip;
};
struct SoloPress {
    std::uint8_t strip;
};
struct RecArmPress {
    std::uint8_t strip;
};
struct SelectPress {
    std::uint8_t strip;
};
struct VpotDelta {
    std::uint8_t strip;
    std::int8_t delta; // clicks, clockwise when positive
};
struct PanModeToggle {};
struct PanSeek {
    std::uint8_t strip;
    std::uint8_t target; // ring position as sent; 1-11 is meaningful
};
struct BankMove {
    std::uint8_t kind; // 0-3 is meaningful
};
struct SeekBank {
    std::uint16_t target; // track index
};
struct Recalibrate {};
struct InputMonitorToggle {
    std::uint8_t strip;
};
struct SetAutoMode {
    std::uint8_t strip; // always below 16
    std::uint8_t mode;  // always below 6
};
struct GroupAutoMode {
    std::uint8_t huiPort;
    std::vector<int> members;
};
struct GroupMute {
    bool enabled;
    std::vector<int> members;
};
struct GroupSolo {
    bool enabled;
    std::vector<int> members;
};
struct GroupFaders {
    std::vector<std::pair<int, double>> entries; // member, 0.0-1.0 nominally (raw / 16383)
};
struct VisibleRange {
    std::uint16_t start;
    std::uint8_t count;
};

using ClientCommand =
    std::variant<Hello, FaderMove, FaderTouch, FaderRelease, MutePress, SoloPress, RecArmPress, SelectPress, VpotDelta,
                 PanModeToggle, PanSeek, BankMove, SeekBank, Recalibrate, InputMonitorToggle, SetAutoMode,
                 GroupAutoMode, GroupMute, GroupSolo, GroupFaders, VisibleRange>;

// True when the datagram is one of this protocol at all: two bytes or more, version 1. Such a datagram counts as a sign
// of life even when no command comes of it.
bool isClientDatagram(ByteView datagram);

// Absent for a wrong version, a reserved or unknown opcode, a datagram shorter than its message, a group that ends
// before its last member, and a SetAutoMode out of range. Bytes behind the message are ignored. Allocates only for the
// group messages.
std::optional<ClientCommand> parseClientCommand(ByteView datagram);

} // namespace lumbrine
