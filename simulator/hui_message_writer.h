// Writes the messages of a HUI host to a surface.
#pragma once

#include "base/bytes.h"
#include "base/fader_value.h"
#include "simulator/short_name.h"
#include "simulator/simulator_options.h"

#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace lumbrine {

// Collects packets with one message each. With running status, consecutive controllers share one packet of up to 64
// bytes. The messages between two calls of `take` are a burst; without repeatZoneSelect, a zone is selected only when
// it changes within the burst.
class HUIMessageWriter {
public:
    explicit HUIMessageWriter(const SimulatorOptions& options)
        : repeatZoneSelect(options.repeatZoneSelect), runningStatus(options.runningStatus),
          displaysPerSysEx(static_cast<std::size_t>(options.displaysPerSysEx)) {}

    struct Display {
        int number; // 0-7 for the strips, 8 for SELECT-ASSIGN
        DisplayText text;
    };

    void ping();
    void fader(int strip, FaderValue position);
    void ring(int pot, std::uint8_t value);
    void led(int zone, int port, bool on);
    void autoLED(int strip, std::uint8_t state); // bits 4-6 of the value: 00 to 70
    void meter(int strip, int side, int level);
    void displays(std::span<const Display> texts);
    void mainDisplay(int part, std::string_view tenCharacters); // part 0-7
    void counter(std::span<const std::uint8_t> digits);         // up to eight, right-most digit first

    std::vector<Bytes> take();

private:
    void controller(std::uint8_t number, std::uint8_t value);
    void port(int zone, std::uint8_t value);

    const bool repeatZoneSelect;
    const bool runningStatus;
    const std::size_t displaysPerSysEx;

    std::vector<Bytes> packets;
    std::optional<int> zoneOfBurst;
};

} // namespace lumbrine
