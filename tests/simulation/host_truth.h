// What the host's names are, and what they can tell about a position: a second, plain statement of both, on the level
// of offsets and names.
#pragma once

#include "simulator/simulated_pro_tools.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

using Names = std::vector<std::string>;

// The host's bank, and what its displays have for each shown track of the session, without the blanks around it.
struct HostView {
    int offset = 0;
    int width = 8;
    Names names;
};

HostView viewOf(const SimulatedProTools& proTools);

// What ASCII has of a display, without the blanks around it.
std::string trimmed(std::string text);

// What the strips show at that offset; blank beyond the end of the session.
Names windowAt(const HostView& host, int offset);

bool isBlank(const Names& window);

// Whether the map is the list of the host's tracks. Blank names at its end look like strips without a track.
bool isMapOf(const HostView& host, Names map);

// Whether each offset that the host can have looks like no other.
bool everyOffsetLooksDifferent(const HostView& host, const SimulatorOptions& options);

} // namespace lumbrine::simulation
