// The messages that mirror the surfaces and the session to the client: values in, datagram out. Pure functions; what is
// sent when is the model's business. Layouts: docs/protocol.md.
#pragma once

#include "base/bytes.h"
#include "base/fader_value.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace lumbrine {

// 0xRRGGBB.
using RGBColor = std::uint32_t;

// Mute, solo and record of one strip. Solo is only ever off or on.
enum class SwitchLight : std::uint8_t { off = 0, on = 1, blinking = 2 };
struct StripSwitches {
    SwitchLight mute = SwitchLight::off;
    SwitchLight solo = SwitchLight::off;
    SwitchLight record = SwitchLight::off;
};

// One track of the session table.
struct TrackRow {
    std::optional<double> fader = std::nullopt; // clamped to 0.0-1.0; absent while never seen
    bool mute = false;
    bool solo = false;
    bool record = false;
    std::optional<RGBColor> color = std::nullopt;
    bool inputMonitor = false;
    bool select = false;
    std::string_view name = {};    // cut to 48 bytes
    std::string_view comment = {}; // cut to 200 bytes
};

// Pan of one session track; all zero on the wire while unknown.
struct SessionPan {
    bool known = false;
    std::uint8_t side = 0; // 0 left, 1 right
    int position = 0;      // clamped to 0-11
    bool centre = false;
};

Bytes trackNameMessage(int strip, std::string_view name);  // first 4 bytes, padded with blanks
Bytes metersMessage(std::span<const std::uint8_t> levels); // left, right for each shown strip; 0-12
Bytes faderMessage(int strip, double value);               // clamped to 0.0-1.0
Bytes switchesMessage(std::span<const StripSwitches> strips);
Bytes panMessage(int strip, int side, int position, bool centre); // position clamped to 0-11
Bytes panModeMessage(bool right);
Bytes bankPosMessage(int bankOffset, std::size_t trackCount, int shownStrips); // negative: unknown, 0xFFFF
Bytes selectsMessage(std::span<const bool> selects);
Bytes fullNameMessage(int strip, std::string_view name); // cut to 48 bytes of whole characters
Bytes colorsMessage(std::span<const std::optional<RGBColor>> colors);
Bytes inputMonsMessage(std::span<const bool> inputMonitors);
Bytes trackRowMessage(int sessionIndex, const TrackRow& row);
Bytes autoModesMessage(std::span<const std::uint8_t> modes);
Bytes transportMessage(bool playing, bool recording);
Bytes busyMessage();
Bytes pongMessage();

// At most 64 tracks in each datagram. No tracks, no datagram.
std::vector<Bytes> sessAutoChunkMessages(std::span<const std::uint8_t> modes);
std::vector<Bytes> sessPanChunkMessages(std::span<const SessionPan> pans);

} // namespace lumbrine
