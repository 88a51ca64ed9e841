#include "client_link/state_messages.h"

#include "base/big_endian.h"
#include "base/utf8.h"
#include "client_link/protocol_version.h"

#include <algorithm>

namespace lumbrine {

namespace {

constexpr std::size_t headerSize = 2;
constexpr std::size_t chunkTracks = 64;
constexpr std::size_t fullNameBytes = 48;
constexpr std::size_t commentBytes = 200;

enum class Type : std::uint8_t {
    trackName = 0x10,
    meters = 0x11,
    fader = 0x12,
    switches = 0x13,
    pan = 0x14,
    panMode = 0x15,
    bankPos = 0x16,
    selects = 0x17,
    fullName = 0x18,
    colors = 0x19,
    inputMons = 0x1A,
    trackRow = 0x1B,
    autoModes = 0x1C,
    transport = 0x1D,
    sessAutoChunk = 0x1E,
    sessPanChunk = 0x1F,
    busy = 0x7D,
    pong = 0x7F,
};

// Starts a message with its header and reserves room for the body, so that building it allocates once.
Bytes begin(Type type, std::size_t bodySize) {
    Bytes message;
    message.reserve(headerSize + bodySize);
    message.push_back(protocolVersion);
    message.push_back(static_cast<std::uint8_t>(type));
    return message;
}

std::uint8_t byte(int value) {
    return static_cast<std::uint8_t>(value);
}

std::uint8_t flag(bool value) {
    return value ? 1 : 0;
}

std::uint8_t ringPosition(int position) {
    return byte(std::clamp(position, 0, 11));
}

void appendText(Bytes& message, std::string_view text) {
    message.insert(message.end(), text.begin(), text.end());
}

void appendCountedText(Bytes& message, std::string_view text) {
    message.push_back(static_cast<std::uint8_t>(text.size()));
    appendText(message, text);
}

void appendColor(Bytes& message, std::optional<RGBColor> color) {
    const RGBColor shown = color.value_or(0x000000);
    message.insert(message.end(), {flag(color.has_value()), shown.red(), shown.green(), shown.blue()});
}

void appendFader(Bytes& message, double value) {
    appendBigEndian16(message, FaderValue::ofUnit(value).raw());
}

Bytes flagsMessage(Type type, std::span<const bool> flags) {
    Bytes message = begin(type, flags.size());
    for (const bool value : flags)
        message.push_back(flag(value));
    return message;
}

Bytes bytesMessage(Type type, ByteView body) {
    Bytes message = begin(type, body.size());
    message.insert(message.end(), body.begin(), body.end());
    return message;
}

// Splits the tracks of a session into datagrams. `append` writes one track.
template <typename Track, typename Append>
std::vector<Bytes> chunkMessages(Type type, std::span<const Track> tracks, std::size_t trackSize, Append append) {
    std::vector<Bytes> messages;
    for (std::size_t first = 0; first < tracks.size(); first += chunkTracks) {
        const auto chunk = tracks.subspan(first, std::min(chunkTracks, tracks.size() - first));
        Bytes& message = messages.emplace_back(begin(type, 3 + chunk.size() * trackSize));
        appendBigEndian16(message, static_cast<std::uint16_t>(first));
        message.push_back(static_cast<std::uint8_t>(chunk.size()));
        for (const Track& track : chunk)
            append(message, track);
    }
    return messages;
}

} // namespace

Bytes trackNameMessage(int strip, std::string_view name) {
    constexpr std::size_t shown = 4;
    Bytes message = begin(Type::trackName, 1 + shown);
    message.push_back(byte(strip));
    appendText(message, name.substr(0, shown));
    message.resize(headerSize + 1 + shown, ' ');
    return message;
}

Bytes metersMessage(std::span<const std::uint8_t> levels) {
    return bytesMessage(Type::meters, levels);
}

Bytes faderMessage(int strip, double value) {
    Bytes message = begin(Type::fader, 3);
    message.push_back(byte(strip));
    appendFader(message, value);
    return message;
}

Bytes switchesMessage(std::span<const StripSwitches> strips) {
    Bytes message = begin(Type::switches, 3 * strips.size());
    for (const StripSwitches& strip : strips)
        for (const SwitchLight light : {strip.mute, strip.solo, strip.record})
            message.push_back(static_cast<std::uint8_t>(light));
    return message;
}

Bytes panMessage(int strip, int side, int position, bool centre) {
    Bytes message = begin(Type::pan, 4);
    message.push_back(byte(strip));
    message.push_back(byte(side));
    message.push_back(ringPosition(position));
    message.push_back(flag(centre));
    return message;
}

Bytes panModeMessage(bool right) {
    Bytes message = begin(Type::panMode, 1);
    message.push_back(flag(right));
    return message;
}

Bytes bankPosMessage(int bankOffset, std::size_t trackCount, int shownStrips) {
    constexpr std::uint16_t unknown = 0xFFFF;
    Bytes message = begin(Type::bankPos, 5);
    // Clamped, so that a very large offset cannot read as "unknown".
    appendBigEndian16(message, bankOffset < 0 ? unknown : static_cast<std::uint16_t>(std::min(bankOffset, 0xFFFE)));
    appendBigEndian16(message, static_cast<std::uint16_t>(std::min<std::size_t>(trackCount, 0xFFFF)));
    message.push_back(byte(shownStrips));
    return message;
}

Bytes selectsMessage(std::span<const bool> selects) {
    return flagsMessage(Type::selects, selects);
}

Bytes fullNameMessage(int strip, std::string_view name) {
    const std::string_view cut = utf8Clamp(name, fullNameBytes);
    Bytes message = begin(Type::fullName, 1 + cut.size());
    message.push_back(byte(strip));
    appendText(message, cut);
    return message;
}

Bytes colorsMessage(std::span<const std::optional<RGBColor>> colors) {
    Bytes message = begin(Type::colors, 4 * colors.size());
    for (const auto& color : colors)
        appendColor(message, color);
    return message;
}

Bytes inputMonsMessage(std::span<const bool> inputMonitors) {
    return flagsMessage(Type::inputMons, inputMonitors);
}

Bytes trackRowMessage(int sessionIndex, const TrackRow& row) {
    const std::string_view name = utf8Clamp(row.name, fullNameBytes);
    const std::string_view comment = utf8Clamp(row.comment, commentBytes);
    Bytes message = begin(Type::trackRow, 16 + name.size() + comment.size());
    appendBigEndian16(message, static_cast<std::uint16_t>(sessionIndex));
    message.push_back(flag(row.fader.has_value()));
    appendFader(message, row.fader.value_or(0.0));
    for (const bool state : {row.mute, row.solo, row.record})
        message.push_back(flag(state));
    appendColor(message, row.color);
    message.push_back(flag(row.inputMonitor));
    message.push_back(flag(row.select));
    appendCountedText(message, name);
    appendCountedText(message, comment);
    return message;
}

Bytes autoModesMessage(std::span<const std::uint8_t> modes) {
    return bytesMessage(Type::autoModes, modes);
}

Bytes transportMessage(bool playing, bool recording) {
    Bytes message = begin(Type::transport, 2);
    message.push_back(flag(playing));
    message.push_back(flag(recording));
    return message;
}

Bytes busyMessage() {
    return begin(Type::busy, 0);
}

Bytes pongMessage() {
    return begin(Type::pong, 0);
}

bool isFromReceiver(ByteView datagram) {
    if (datagram.size() < headerSize || datagram[0] != protocolVersion) return false;
    const Type type{datagram[1]};
    return (type >= Type::trackName && type <= Type::sessPanChunk) || type == Type::busy || type == Type::pong;
}

std::vector<Bytes> sessAutoChunkMessages(std::span<const std::uint8_t> modes) {
    return chunkMessages(Type::sessAutoChunk, modes, 1,
                         [](Bytes& message, std::uint8_t mode) { message.push_back(mode); });
}

std::vector<Bytes> sessPanChunkMessages(std::span<const SessionPan> pans) {
    return chunkMessages(Type::sessPanChunk, pans, 3, [](Bytes& message, const SessionPan& pan) {
        message.push_back(pan.known ? pan.side : std::uint8_t{0});
        message.push_back(pan.known ? ringPosition(pan.position) : std::uint8_t{0});
        message.push_back(flag(pan.known && pan.centre));
    });
}

} // namespace lumbrine
