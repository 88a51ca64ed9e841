// The messages that a client sends: one struct for each message, and the parser for datagrams.
//
// A datagram is the version byte 0x01, an opcode and a body; docs/protocol.md has every byte. A strip is a surface
// strip exactly as received, 0-255: the parser does not check its range, except where a field says so. A member is the
// index of a track in the session.
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
    std::uint8_t target; // ring position, unchecked; 1-11 are meaningful
};
struct BankMove {
    std::uint8_t kind; // unchecked; 0-3 are meaningful, the ports of the HUI bank buttons
};
struct SeekBank {
    std::uint16_t target; // index of the track that the first strip is to show
};
struct Recalibrate {};
struct InputMonitorToggle {
    std::uint8_t strip;
};
struct SetAutoMode {
    std::uint8_t strip; // checked: 0-15
    std::uint8_t mode;  // checked: 0-5, a port of the HUI automation keys
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
    std::vector<std::pair<int, double>> entries; // member and raw / 16383, which is above 1.0 for more than 14 bits
};
struct VisibleRange {
    std::uint16_t start;
    std::uint8_t count;
};

using ClientCommand =
    std::variant<Hello, FaderMove, FaderTouch, FaderRelease, MutePress, SoloPress, RecArmPress, SelectPress, VpotDelta,
                 PanModeToggle, PanSeek, BankMove, SeekBank, Recalibrate, InputMonitorToggle, SetAutoMode,
                 GroupAutoMode, GroupMute, GroupSolo, GroupFaders, VisibleRange>;

// True for a datagram of this protocol: at least two bytes, version 1. Such a datagram counts as a sign of life from
// the client even when it holds no valid command.
bool isClientDatagram(ByteView datagram);

// Absent for a wrong version, a reserved or unknown opcode, a datagram that is shorter than its message, a group with
// fewer members than its count, and a SetAutoMode out of range. Extra bytes after the message are ignored. Only group
// messages allocate.
std::optional<ClientCommand> parseClientCommand(ByteView datagram);

} // namespace lumbrine
