#include "remote/receiver_message.h"

#include "base/big_endian.h"
#include "remote/protocol_version.h"

#include <type_traits>
#include <utility>

namespace lumbrine::remote {
namespace {

using Parsed = std::optional<ReceiverMessage>;

constexpr std::size_t headerBytes = 2;

std::optional<bool> flagOf(std::uint8_t byte) {
    if (byte > 1) return std::nullopt;
    return byte == 1;
}

std::optional<Light> lightOf(std::uint8_t byte) {
    if (byte > 2) return std::nullopt;
    return static_cast<Light>(byte);
}

std::optional<FaderValue> faderOf(std::uint16_t raw) {
    if (raw > FaderValue::fullScale) return std::nullopt;
    return FaderValue::ofRaw(raw);
}

std::optional<PanSide> panSideOf(std::uint8_t byte) {
    if (byte > 1) return std::nullopt;
    return static_cast<PanSide>(byte);
}

std::optional<RingPosition> ringOf(std::uint8_t position, std::uint8_t centre) {
    if (position > maxPanPosition || centre > 1) return std::nullopt;
    return RingPosition{position, centre == 1};
}

std::optional<AutoMode> autoModeOf(std::uint8_t byte) {
    if (byte <= 5 || (byte >= 9 && byte <= 12)) return byte;
    return std::nullopt;
}

std::string textOf(ByteView bytes) {
    return std::string(bytes.begin(), bytes.end());
}

// A value that may be unknown (inner optional), read from bytes that may be malformed (outer optional).
template <typename T>
using Checked = std::optional<std::optional<T>>;

Checked<RGBColor> colorOf(ByteView bytes) {
    const RGBColor color(static_cast<std::uint32_t>(bytes[1] << 16 | bytes[2] << 8 | bytes[3]));
    if (bytes[0] == 1) return Checked<RGBColor>(std::in_place, color);
    if (bytes[0] == 0 && color == 0x000000) return Checked<RGBColor>(std::in_place);
    return std::nullopt;
}

// Reads entries of `width` bytes each. Absent when the bytes are not a whole number of entries, or one is malformed.
template <typename Entry, typename ParseEntry>
std::optional<std::vector<Entry>> listOf(ByteView body, std::size_t width, ParseEntry parseEntry) {
    if (body.size() % width != 0) return std::nullopt;
    std::vector<Entry> entries;
    entries.reserve(body.size() / width);
    for (std::size_t at = 0; at < body.size(); at += width) {
        std::optional<Entry> entry = parseEntry(body.subspan(at, width));
        if (!entry) return std::nullopt;
        entries.push_back(*std::move(entry));
    }
    return entries;
}

// Parses a message that consists of one entry for each strip shown.
template <typename Message, typename ParseEntry>
Parsed perStrip(ByteView body, std::size_t width, ParseEntry parseEntry) {
    using Entry = typename decltype(Message::strips)::value_type;
    if (body.empty() || body.size() > width * stripCount) return std::nullopt;
    auto entries = listOf<Entry>(body, width, parseEntry);
    if (!entries) return std::nullopt;
    return Message{*std::move(entries)};
}

std::optional<bool> flagEntry(ByteView entry) {
    return flagOf(entry[0]);
}

std::optional<MeterLevels> meterEntry(ByteView entry) {
    if (entry[0] > maxMeterLevel || entry[1] > maxMeterLevel) return std::nullopt;
    return MeterLevels{entry[0], entry[1]};
}

std::optional<StripLights> lightsEntry(ByteView entry) {
    const auto mute = lightOf(entry[0]);
    const auto solo = flagOf(entry[1]);
    const auto record = lightOf(entry[2]);
    if (!mute || !solo || !record) return std::nullopt;
    return StripLights{*mute, *solo, *record};
}

std::optional<AutoMode> autoModeEntry(ByteView entry) {
    return autoModeOf(entry[0]);
}

std::optional<SessPan> sessPanEntry(ByteView entry) {
    const auto side = panSideOf(entry[0]);
    const auto ring = ringOf(entry[1], entry[2]);
    if (!side || !ring) return std::nullopt;
    return SessPan{*side, *ring};
}

Parsed parseTrackName(ByteView body) {
    if (body.size() != 5) return std::nullopt;
    const auto strip = Strip::of(body[0]);
    if (!strip) return std::nullopt;
    return TrackName{*strip, textOf(body.subspan(1))};
}

Parsed parseFader(ByteView body) {
    if (body.size() != 3) return std::nullopt;
    const auto strip = Strip::of(body[0]);
    const auto value = faderOf(readBigEndian16(body, 1));
    if (!strip || !value) return std::nullopt;
    return Fader{*strip, *value};
}

Parsed parsePan(ByteView body) {
    if (body.size() != 4) return std::nullopt;
    const auto strip = Strip::of(body[0]);
    const auto side = panSideOf(body[1]);
    const auto ring = ringOf(body[2], body[3]);
    if (!strip || !side || !ring) return std::nullopt;
    return Pan{*strip, *side, *ring};
}

Parsed parsePanMode(ByteView body) {
    if (body.size() != 1) return std::nullopt;
    const auto right = flagOf(body[0]);
    if (!right) return std::nullopt;
    return PanMode{*right};
}

Parsed parseBankPos(ByteView body) {
    if (body.size() != 5 || body[4] < 1 || body[4] > stripCount) return std::nullopt;
    const std::uint16_t offset = readBigEndian16(body, 0);
    BankPos message{std::nullopt, readBigEndian16(body, 2), body[4]};
    if (offset != 0xFFFF) message.offset = offset;
    return message;
}

Parsed parseFullName(ByteView body) {
    if (body.empty() || body.size() > 1 + maxNameBytes) return std::nullopt;
    const auto strip = Strip::of(body[0]);
    if (!strip) return std::nullopt;
    return FullName{*strip, textOf(body.subspan(1))};
}

// Reads a length byte and that many bytes of text from the start of `rest`, and advances `rest` past them.
std::optional<std::string> takeText(ByteView& rest, std::size_t maxBytes) {
    if (rest.empty()) return std::nullopt;
    const std::size_t length = rest[0];
    if (length > maxBytes || rest.size() < 1 + length) return std::nullopt;
    std::string text = textOf(rest.subspan(1, length));
    rest = rest.subspan(1 + length);
    return text;
}

Checked<FaderValue> rowFaderOf(ByteView bytes) {
    const std::uint16_t raw = readBigEndian16(bytes, 1);
    if (bytes[0] == 0 && raw == 0) return Checked<FaderValue>(std::in_place);
    if (bytes[0] != 1 || !faderOf(raw)) return std::nullopt;
    return Checked<FaderValue>(std::in_place, FaderValue::ofRaw(raw));
}

Parsed parseTrackRow(ByteView body) {
    constexpr std::size_t fixedBytes = 14; // index, fader, three switches, colour, monitor, select
    if (body.size() < fixedBytes) return std::nullopt;
    const auto fader = rowFaderOf(body.subspan(2, 3));
    const auto mute = flagOf(body[5]);
    const auto solo = flagOf(body[6]);
    const auto record = flagOf(body[7]);
    const auto color = colorOf(body.subspan(8, 4));
    const auto inputMonitor = flagOf(body[12]);
    const auto select = flagOf(body[13]);
    if (!fader || !mute || !solo || !record || !color || !inputMonitor || !select) return std::nullopt;
    ByteView rest = body.subspan(fixedBytes);
    auto name = takeText(rest, maxNameBytes);
    if (!name) return std::nullopt;
    auto comment = takeText(rest, maxCommentBytes);
    if (!comment || !rest.empty()) return std::nullopt;
    return TrackRow{
        readBigEndian16(body, 0), *fader, *mute, *solo, *record, *color, *inputMonitor, *select, *std::move(name),
        *std::move(comment)};
}

Parsed parseTransport(ByteView body) {
    if (body.size() != 2) return std::nullopt;
    const auto playing = flagOf(body[0]);
    const auto recording = flagOf(body[1]);
    if (!playing || !recording) return std::nullopt;
    return Transport{*playing, *recording};
}

// Parses a first index, a count, and that many entries of `width` bytes, with no bytes after them. A chunk that exceeds
// the largest possible index is malformed.
template <typename Message, typename Entry, typename ParseEntry>
Parsed parseChunk(ByteView body, std::size_t width, ParseEntry parseEntry) {
    if (body.size() < 3) return std::nullopt;
    const std::uint16_t first = readBigEndian16(body, 0);
    const std::size_t count = body[2];
    if (count < 1 || count > maxChunkTracks || body.size() != 3 + count * width) return std::nullopt;
    if (first + count > 0x10000) return std::nullopt;
    auto entries = listOf<Entry>(body.subspan(3), width, parseEntry);
    if (!entries) return std::nullopt;
    return Message{first, *std::move(entries)};
}

template <typename Message>
Parsed parseBare(ByteView body) {
    if (!body.empty()) return std::nullopt;
    return Message{};
}

} // namespace

std::optional<ReceiverMessage> parseReceiverMessage(ByteView datagram) {
    if (datagram.size() < headerBytes || datagram[0] != protocolVersion) return std::nullopt;
    const ByteView body = datagram.subspan(headerBytes);
    switch (datagram[1]) {
    case 0x10:
        return parseTrackName(body);
    case 0x11:
        return perStrip<Meters>(body, 2, meterEntry);
    case 0x12:
        return parseFader(body);
    case 0x13:
        return perStrip<Switches>(body, 3, lightsEntry);
    case 0x14:
        return parsePan(body);
    case 0x15:
        return parsePanMode(body);
    case 0x16:
        return parseBankPos(body);
    case 0x17:
        return perStrip<Selects>(body, 1, flagEntry);
    case 0x18:
        return parseFullName(body);
    case 0x19:
        return perStrip<Colors>(body, 4, colorOf);
    case 0x1A:
        return perStrip<InputMons>(body, 1, flagEntry);
    case 0x1B:
        return parseTrackRow(body);
    case 0x1C:
        return perStrip<AutoModes>(body, 1, autoModeEntry);
    case 0x1D:
        return parseTransport(body);
    case 0x1E:
        return parseChunk<SessAutoChunk, AutoMode>(body, 1, autoModeEntry);
    case 0x1F:
        return parseChunk<SessPanChunk, SessPan>(body, 3, sessPanEntry);
    case 0x7D:
        return parseBare<Busy>(body);
    case 0x7F:
        return parseBare<Pong>(body);
    default:
        return std::nullopt;
    }
}

} // namespace lumbrine::remote
