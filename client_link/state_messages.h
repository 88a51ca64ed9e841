// Builds the messages that show the client the state of the surfaces and of the session. Pure functions: values in,
// datagram out; the model decides when to send what. docs/protocol.md has every byte.
#pragma once

#include "base/bytes.h"
#include "base/fader_value.h"
#include "base/rgb_color.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace lumbrine {

// The LEDs of one strip. Solo never blinks.
enum class SwitchLight : std::uint8_t { off = 0, on = 1, blinking = 2 };
struct StripSwitches {
    SwitchLight mute = SwitchLight::off;
    SwitchLight solo = SwitchLight::off;
    SwitchLight record = SwitchLight::off;
};

// One track of the session table.
struct TrackRow {
    std::optional<double> fader = std::nullopt; // clamped to 0.0-1.0; absent until a surface has shown it
    bool mute = false;
    bool solo = false;
    bool record = false;
    std::optional<RGBColor> color = std::nullopt;
    bool inputMonitor = false;
    bool select = false;
    std::string_view name = {};    // cut to 48 bytes
    std::string_view comment = {}; // cut to 200 bytes
};

// Pan of one session track. While it is unknown, all its bytes are zero.
struct SessionPan {
    bool known = false;
    std::uint8_t side = 0; // 0 left, 1 right, of a stereo pan
    int position = 0;      // V-Pot ring position, clamped to 0-11
    bool centre = false;
};

Bytes trackNameMessage(int strip, std::string_view name);  // cut to 4 bytes or padded with blanks to 4
Bytes metersMessage(std::span<const std::uint8_t> levels); // left and right of each strip shown, 0-12 each
Bytes faderMessage(int strip, double value);               // clamped to 0.0-1.0
Bytes switchesMessage(std::span<const StripSwitches> strips);
Bytes panMessage(int strip, int side, int position, bool centre); // position clamped to 0-11
Bytes panModeMessage(bool right);
Bytes bankPosMessage(int bankOffset, std::size_t trackCount, int shownStrips); // negative means unknown, sent as 0xFFFF
Bytes selectsMessage(std::span<const bool> selects);
Bytes fullNameMessage(int strip, std::string_view name); // cut to 48 bytes of whole characters
Bytes colorsMessage(std::span<const std::optional<RGBColor>> colors);
Bytes inputMonsMessage(std::span<const bool> inputMonitors);
Bytes trackRowMessage(int sessionIndex, const TrackRow& row);
Bytes autoModesMessage(std::span<const std::uint8_t> modes);
Bytes transportMessage(bool playing, bool recording);
Bytes busyMessage();
Bytes pongMessage();

// True when the datagram is one that only a receiver sends, judged by its version and type.
bool isFromReceiver(ByteView datagram);

// One datagram for every 64 tracks; none for an empty session.
std::vector<Bytes> sessAutoChunkMessages(std::span<const std::uint8_t> modes);
std::vector<Bytes> sessPanChunkMessages(std::span<const SessionPan> pans);

} // namespace lumbrine
