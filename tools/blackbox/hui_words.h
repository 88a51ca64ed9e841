// MIDI of the surfaces as words.
#pragma once

#include "base/bytes.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lumbrine::blackbox {

enum class Direction { fromHost, toHost };

struct HUIWord {
    enum class Kind { ping, fader, touch, key, light, display, ring, meter, other };

    Kind kind;
    std::string text;
    std::optional<int> strip = {}; // of all 16, from 0
    int value = 0;                 // fader: 0 to 16383; touch, key and light: 0 or 1
    bool isBankKey = false;
};

// Keeps what a message leaves open for the next (the zone of a port, the high half of a fader), for each surface and
// direction.
class HUIWords {
public:
    // The messages of one packet. A message that stands for nothing alone (a zone) is no word yet.
    std::vector<HUIWord> read(int surface, Direction direction, ByteView packet);

private:
    struct State {
        std::uint8_t zone = 0;
        std::array<std::uint8_t, 8> faderHigh{};
    };

    std::optional<HUIWord> controlChange(int surface, Direction direction, std::uint8_t controller, std::uint8_t value);

    std::map<std::pair<int, Direction>, State> states;
};

} // namespace lumbrine::blackbox
