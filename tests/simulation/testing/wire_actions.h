// What went over a surface's wire, written down by hand.
#pragma once

#include "tests/simulation/surface_wire.h"

namespace lumbrine::simulation {

inline TimePoint at(double time) {
    return TimePoint{} + seconds(time);
}

inline WireAction edge(double time, int zone, int port, int value) {
    return {at(time), WireAction::Kind::edge, zone, port, value};
}

} // namespace lumbrine::simulation
