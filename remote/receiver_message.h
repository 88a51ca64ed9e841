// The messages that the receiver sends: one struct for each message, and the parser for datagrams.
//
// A datagram is the version byte 0x01, a type and a body; numbers are big-endian (docs/protocol.md). This parser shares
// no code with the receiver's builders, so that in tests each end checks the other.
#pragma once

#include "base/bytes.h"
#include "base/fader_value.h"
#include "base/rgb_color.h"
#include "base/strip.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace lumbrine::remote {

inline constexpr std::size_t maxNameBytes = 48;
inline constexpr std::size_t maxCommentBytes = 200;
inline constexpr std::size_t maxChunkTracks = 64;
inline constexpr std::uint8_t maxMeterLevel = 12;
inline constexpr std::uint8_t maxPanPosition = 11;

enum class Light : std::uint8_t { off = 0, on = 1, blinking = 2 };
enum class PanSide : std::uint8_t { left = 0, right = 1 };

// The code of an automation mode: 0 unknown, 1 read, 2 touch, 3 latch, 4 write, 5 off; 9-12 the first four with trim.
using AutoMode = std::uint8_t;

struct TrackName {
    Strip strip;
    std::string name; // the four bytes as received, blanks included
    bool operator==(const TrackName&) const = default;
};
struct MeterLevels {
    std::uint8_t left = 0; // 0-12
    std::uint8_t right = 0;
    bool operator==(const MeterLevels&) const = default;
};
struct Meters {
    std::vector<MeterLevels> strips;
    bool operator==(const Meters&) const = default;
};
struct Fader {
    Strip strip;
    FaderValue value; // at most full scale
    bool operator==(const Fader&) const = default;
};
struct StripLights {
    Light mute = Light::off;
    bool solo = false;
    Light record = Light::off;
    bool operator==(const StripLights&) const = default;
};
struct Switches {
    std::vector<StripLights> strips;
    bool operator==(const Switches&) const = default;
};
struct RingPosition {
    std::uint8_t position = 0; // 0 dark, 1-11 from left to right
    bool centre = false;
    bool operator==(const RingPosition&) const = default;
};
struct Pan {
    Strip strip;
    PanSide side;
    RingPosition ring;
    bool operator==(const Pan&) const = default;
};
struct PanMode {
    bool right; // which side of stereo pans the V-Pots turn
    bool operator==(const PanMode&) const = default;
};
struct BankPos {
    std::optional<std::uint16_t> offset; // session track on the first strip; absent while unknown
    std::uint16_t trackCount;
    std::uint8_t shownStrips; // 1-16
    bool operator==(const BankPos&) const = default;
};
struct Selects {
    std::vector<bool> strips;
    bool operator==(const Selects&) const = default;
};
struct FullName {
    Strip strip;
    std::string name; // at most 48 bytes; should be UTF-8, but is not checked
    bool operator==(const FullName&) const = default;
};
struct Colors {
    std::vector<std::optional<RGBColor>> strips;
    bool operator==(const Colors&) const = default;
};
struct InputMons {
    std::vector<bool> strips;
    bool operator==(const InputMons&) const = default;
};
struct TrackRow {
    std::uint16_t index = 0; // session track
    std::optional<FaderValue> fader = {};
    bool mute = false;
    bool solo = false;
    bool record = false;
    std::optional<RGBColor> color = {};
    bool inputMonitor = false;
    bool select = false;
    std::string name = {};    // at most 48 bytes; should be UTF-8, but is not checked
    std::string comment = {}; // at most 200 bytes; likewise
    bool operator==(const TrackRow&) const = default;
};
struct AutoModes {
    std::vector<AutoMode> strips;
    bool operator==(const AutoModes&) const = default;
};
struct Transport {
    bool playing = false;
    bool recording = false;
    bool operator==(const Transport&) const = default;
};
struct SessAutoChunk {
    std::uint16_t first;         // session track of the first mode
    std::vector<AutoMode> modes; // 1-64
    bool operator==(const SessAutoChunk&) const = default;
};
struct SessPan {
    PanSide side = PanSide::left;
    RingPosition ring;
    bool operator==(const SessPan&) const = default;

    // All bytes are zero for a track whose pan the receiver has never seen.
    bool known() const { return *this != SessPan{}; }
};
struct SessPanChunk {
    std::uint16_t first;       // session track of the first pan
    std::vector<SessPan> pans; // 1-64
    bool operator==(const SessPanChunk&) const = default;
};
struct Busy {
    bool operator==(const Busy&) const = default;
};
struct Pong {
    bool operator==(const Pong&) const = default;
};

using ReceiverMessage =
    std::variant<TrackName, Meters, Fader, Switches, Pan, PanMode, BankPos, Selects, FullName, Colors, InputMons,
                 TrackRow, AutoModes, Transport, SessAutoChunk, SessPanChunk, Busy, Pong>;

// Absent unless the datagram is exactly one message: the right version, a known type, the exact length, and every value
// in its range. Lists of strips have 1 to 16 entries. Other clients need not be so strict; this one exists to find
// mistakes of the receiver.
std::optional<ReceiverMessage> parseReceiverMessage(ByteView datagram);

} // namespace lumbrine::remote
