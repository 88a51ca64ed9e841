#include "simulator/hui_message_writer.h"

#include "simulator/hui_address.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

namespace {

constexpr std::uint8_t controlChange = 0xB0;
constexpr std::size_t longestRun = 64;

std::uint8_t byte(int value) {
    return static_cast<std::uint8_t>(value);
}

Bytes sysEx(int command) {
    return {0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, byte(command)};
}

} // namespace

void HUIMessageWriter::ping() {
    packets.push_back({0x90, 0x00, 0x00});
}

void HUIMessageWriter::fader(int strip, FaderValue position) {
    controller(byte(strip), position.high());
    controller(byte(0x20 + strip), position.low());
}

void HUIMessageWriter::ring(int pot, std::uint8_t value) {
    controller(byte(0x10 + pot), value);
}

void HUIMessageWriter::led(int zone, int portNumber, bool on) {
    port(zone, byte((on ? 0x40 : 0x00) | portNumber));
}

void HUIMessageWriter::autoLED(int strip, std::uint8_t state) {
    port(strip, byte(state | hui_address::automation));
}

void HUIMessageWriter::meter(int strip, int side, int level) {
    packets.push_back({0xA0, byte(strip), byte(side << 4 | level)});
}

void HUIMessageWriter::displays(std::span<const Display> texts) {
    while (!texts.empty()) {
        const std::size_t packed = std::min(displaysPerSysEx, texts.size());
        Bytes message = sysEx(0x10);
        for (const Display& display : texts.first(packed)) {
            message.push_back(byte(display.number));
            message.insert(message.end(), display.text.begin(), display.text.end());
        }
        message.push_back(0xF7);
        packets.push_back(std::move(message));
        texts = texts.subspan(packed);
    }
}

void HUIMessageWriter::mainDisplay(int part, std::string_view tenCharacters) {
    Bytes message = sysEx(0x12);
    message.push_back(byte(part));
    message.insert(message.end(), tenCharacters.begin(), tenCharacters.end());
    message.push_back(0xF7);
    packets.push_back(std::move(message));
}

void HUIMessageWriter::counter(std::span<const std::uint8_t> digits) {
    Bytes message = sysEx(0x11);
    message.insert(message.end(), digits.begin(), digits.end());
    message.push_back(0xF7);
    packets.push_back(std::move(message));
}

std::vector<Bytes> HUIMessageWriter::take() {
    zoneOfBurst.reset();
    return std::exchange(packets, {});
}

void HUIMessageWriter::controller(std::uint8_t number, std::uint8_t value) {
    if (runningStatus && !packets.empty() && packets.back().front() == controlChange &&
        packets.back().size() + 2 <= longestRun) {
        packets.back().insert(packets.back().end(), {number, value});
    } else {
        packets.push_back({controlChange, number, value});
    }
}

void HUIMessageWriter::port(int zone, std::uint8_t value) {
    if (repeatZoneSelect || zoneOfBurst != zone) controller(0x0C, byte(zone));
    zoneOfBurst = zone;
    controller(0x2C, value);
}

} // namespace lumbrine
