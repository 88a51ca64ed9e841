// What went over one surface's wire to Pro Tools, read back into actions. A sequence that is not whole is a violation.
#pragma once

#include "simulator/simulated_pro_tools.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

constexpr int autoPort = 4;  // of a strip's AUTO switch
constexpr int bankZone = 10; // of the bank and channel buttons
constexpr int modeZone = 24; // of the automation modes' buttons

std::string timeText(TimePoint at); // "12.300000 s"

struct WireAction {
    enum class Kind { fader, edge, vpot };

    TimePoint at;
    Kind kind;
    int number = 0; // strip; of an edge: zone
    int port = 0;   // of an edge
    int value = 0;  // fader 0-16383; edge 0 or 1; V-Pot byte

    bool isOfStrip() const { return kind == Kind::edge && number < 8; }
    bool isTouch() const { return isOfStrip() && port == 0 && value == 1; }
    bool isTouchEnd() const { return isOfStrip() && port == 0 && value == 0; }

    // Whether all fields except the time are equal.
    bool sameAs(const WireAction& other) const;
    std::string text() const;
};

using SurfaceActions = std::vector<std::vector<WireAction>>; // by surface

struct SurfaceWire {
    std::vector<WireAction> actions;
    std::vector<std::string> violations;
};

SurfaceWire readWire(const std::vector<ReceivedPacket>& packets);

} // namespace lumbrine::simulation
