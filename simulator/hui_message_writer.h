// Writes what a HUI host sends to a surface.
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

// Collects packets, one message in each; with running status a run of controllers shares one packet of up to 64 bytes.
// What is collected between two `take` is a burst: within it a zone is selected once for the ports that follow.
class HUIMessageWriter {
public:
    explicit HUIMessageWriter(const SimulatorOptions& options)
        : repeatZoneSelect(options.repeatZoneSelect), runningStatus(options.runningStatus),
          displaysPerSysEx(static_cast<std::size_t>(options.displaysPerSysEx)) {}

    struct Display {
        int number; // 0-7 the strips', 8 SELECT-ASSIGN
        DisplayText text;
    };

    void ping();
    void fader(int strip, FaderValue position);
    void ring(int pot, std::uint8_t value);
    void led(int zone, int port, bool on);
    void autoLED(int strip, std::uint8_t state); // 00 to 70
    void meter(int strip, int side, int level);
    void displays(std::span<const Display> texts);
    void mainDisplay(int part, std::string_view tenCharacters); // part 0-7
    void counter(std::span<const std::uint8_t> digits);         // up to eight, right-most first

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
