// A fader position: 0.0-1.0 in the model, 14 bits (0-16383) in HUI and on the wire to the client.
#pragma once

#include <algorithm>
#include <cstdint>

namespace lumbrine {

class FaderValue {
public:
    static constexpr std::uint16_t fullScale = 16383;

    // Clamps to 0.0-1.0, scales and truncates: 0.5 gives 8191, 0.99999 gives 16382. Must not be NaN.
    static constexpr FaderValue ofUnit(double unit) {
        return FaderValue(static_cast<std::uint16_t>(std::clamp(unit, 0.0, 1.0) * fullScale));
    }

    // Any 16-bit number from the wire. Above 16383 it is not clamped: unit() is then greater than 1.0.
    static constexpr FaderValue ofRaw(std::uint16_t raw) { return FaderValue(raw); }

    // The two 7-bit halves of a HUI fader message.
    static constexpr FaderValue ofHalves(std::uint8_t high, std::uint8_t low) {
        return FaderValue(static_cast<std::uint16_t>(high << 7 | low));
    }

    constexpr std::uint16_t raw() const { return value; }
    constexpr double unit() const { return value / 16383.0; }
    constexpr std::uint8_t high() const { return static_cast<std::uint8_t>(value >> 7 & 0x7F); }
    constexpr std::uint8_t low() const { return static_cast<std::uint8_t>(value & 0x7F); }

    constexpr bool operator==(const FaderValue&) const = default;

private:
    explicit constexpr FaderValue(std::uint16_t raw) : value(raw) {}

    std::uint16_t value;
};

} // namespace lumbrine
