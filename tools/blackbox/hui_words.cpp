#include "tools/blackbox/hui_words.h"

#include <algorithm>
#include <cstdio>

namespace lumbrine::blackbox {

namespace {

using WordKind = HUIWord::Kind;

constexpr int strips = 8; // of a surface
constexpr std::array<std::uint8_t, 7> displayBegin{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10};
constexpr std::array<const char*, 8> stripPorts{"touch", "select", "mute", "solo", "auto", "v-sel", "insert", "rec"};
constexpr std::array<const char*, 4> bankPorts{"channel-left", "bank-left", "channel-right", "bank-right"};
constexpr std::uint8_t bankZone = 0x0A;

std::string inHex(ByteView bytes) {
    std::string text;
    std::array<char, 4> digits{};
    for (const std::uint8_t byte : bytes) {
        std::snprintf(digits.data(), digits.size(), "%s%02x", text.empty() ? "" : " ", byte);
        text += digits.data();
    }
    return text;
}

std::string numberOf(int strip) {
    return std::to_string(strip + 1);
}

HUIWord faderAt(int strip, int raw) {
    std::array<char, 16> value{};
    std::snprintf(value.data(), value.size(), "%.4f", raw / 16383.0);
    return {
        .kind = WordKind::fader, .text = "fader " + numberOf(strip) + " " + value.data(), .strip = strip, .value = raw};
}

HUIWord portOf(int surface, Direction direction, std::uint8_t zone, std::uint8_t value) {
    const int port = value & 0x0F;
    const bool on = (value & 0x40) != 0;
    const bool isLight = direction == Direction::fromHost;
    HUIWord word{.kind = isLight ? WordKind::light : WordKind::key, .text = {}, .value = on ? 1 : 0};
    if (zone < strips && port < 8) {
        word.strip = surface * strips + zone;
        word.text = std::string(stripPorts[static_cast<std::size_t>(port)]) + " " + numberOf(*word.strip);
        if (port == 0) word.kind = WordKind::touch;
    } else if (zone == bankZone && port < 4) {
        word.text = bankPorts[static_cast<std::size_t>(port)];
        word.isBankKey = !isLight;
    } else {
        std::array<char, 32> text{};
        std::snprintf(text.data(), text.size(), "zone-%02x port-%x", zone, static_cast<unsigned>(port));
        word.text = text.data();
    }
    const bool isTouch = word.kind == WordKind::touch;
    word.text = (isLight   ? "light "
                 : isTouch ? ""
                           : "key ") +
                word.text + (isLight ? (on ? " on" : " off") : (on ? " down" : " up"));
    return word;
}

HUIWord displayOf(int surface, ByteView message) {
    std::string text(message.begin() + displayBegin.size() + 1, message.begin() + displayBegin.size() + 5);
    std::ranges::replace_if(text, [](char c) { return c < 0x20 || c > 0x7E; }, '?');
    const int zone = message[displayBegin.size()];
    if (zone >= strips) return {.kind = WordKind::display, .text = "display " + std::to_string(zone) + " " + text};
    const int strip = surface * strips + zone;
    return {.kind = WordKind::display, .text = "name " + numberOf(strip) + " \"" + text + "\"", .strip = strip};
}

bool isDisplay(ByteView message) {
    return message.size() == displayBegin.size() + 6 &&
           std::ranges::equal(message.first(displayBegin.size()), displayBegin);
}

std::size_t lengthAt(ByteView packet) {
    const std::uint8_t status = packet[0];
    if (status == 0xF0) {
        const auto end = std::ranges::find(packet, 0xF7);
        return static_cast<std::size_t>(end - packet.begin()) + (end == packet.end() ? 0 : 1);
    }
    if (status >= 0xF4 || status < 0x80) return 1;
    const bool isShort = (status & 0xE0) == 0xC0 || status == 0xF1 || status == 0xF3;
    return std::min<std::size_t>(isShort ? 2 : 3, packet.size());
}

} // namespace

std::vector<HUIWord> HUIWords::read(int surface, Direction direction, ByteView packet) {
    std::vector<HUIWord> words;
    while (!packet.empty()) {
        const ByteView message = packet.first(lengthAt(packet));
        packet = packet.subspan(message.size());
        const bool isWhole = message.size() == 3;
        if (isWhole && message[0] == 0xB0) {
            if (auto word = controlChange(surface, direction, message[1], message[2]))
                words.push_back(*std::move(word));
        } else if (isWhole && (message[0] & 0xEF) == 0x80 && message[1] == 0) {
            words.push_back({.kind = WordKind::ping, .text = message[2] == 0x7F ? "pong" : "ping"});
        } else if (isWhole && message[0] == 0xA0 && message[1] < strips) {
            const int strip = surface * strips + message[1];
            words.push_back({.kind = WordKind::meter,
                             .text = "meter " + numberOf(strip) + ((message[2] & 0x10) != 0 ? " right " : " left ") +
                                     std::to_string(message[2] & 0x0F),
                             .strip = strip,
                             .value = message[2]});
        } else if (isDisplay(message)) {
            words.push_back(displayOf(surface, message));
        } else {
            words.push_back({.kind = WordKind::other, .text = "bytes " + inHex(message)});
        }
    }
    return words;
}

std::optional<HUIWord> HUIWords::controlChange(int surface, Direction direction, std::uint8_t controller,
                                               std::uint8_t value) {
    State& state = states[{surface, direction}];
    const int zone = controller & 0x0F;
    const int strip = surface * strips + zone;
    if (controller == 0x0C || controller == 0x0F) {
        state.zone = value;
        return std::nullopt;
    }
    if (controller == 0x2C || controller == 0x2F) return portOf(surface, direction, state.zone, value);
    if (zone >= strips || controller >= 0x50)
        return HUIWord{.kind = WordKind::other, .text = "bytes " + inHex(Bytes{0xB0, controller, value})};
    switch (controller & 0xF0) {
    case 0x00:
        state.faderHigh[static_cast<std::size_t>(zone)] = value;
        return std::nullopt;
    case 0x20:
        return faderAt(strip, state.faderHigh[static_cast<std::size_t>(zone)] << 7 | value);
    case 0x10:
        return HUIWord{.kind = WordKind::ring,
                       .text = "ring " + numberOf(strip) + " " + std::to_string(value & 0x0F) +
                               ((value & 0x40) != 0 ? " centre" : ""),
                       .strip = strip};
    case 0x40:
        return HUIWord{.kind = WordKind::other,
                       .text = "v-pot " + numberOf(strip) + " " +
                               std::to_string((value & 0x40) != 0 ? value & 0x3F : -(value & 0x3F)),
                       .strip = strip};
    default:
        return HUIWord{.kind = WordKind::other, .text = "bytes " + inHex(Bytes{0xB0, controller, value})};
    }
}

} // namespace lumbrine::blackbox
