// What the accepted datagrams ask of the banks, the automation modes and the pans, told from their bytes by the
// protocol's own rules. Faders, switches and turns: actions.h.
#pragma once

#include "tests/simulation/owner_oracle.h"

#include <utility>
#include <vector>

namespace lumbrine::simulation {

struct BankMoveRequest {
    TimePoint at;
    int button; // the bank port, 0-3
};
struct SeekRequest {
    TimePoint at;
    int target;
};
struct AutoModeRequest {
    TimePoint at;
    int strip;      // 0-15
    int modePort;   // 0-5
    int number = 0; // of the ownership
};
struct PanSeekRequest {
    TimePoint at;
    int strip; // 0-15
};

struct WalkRequest {
    enum class Kind { faders, modes, range };

    TimePoint at;
    Kind kind;
    int steps = 0;                                // members, or tracks of the range
    int modePort = -1;                            // of modes
    std::vector<std::pair<int, int>> faders = {}; // member, 0-16383
    std::vector<int> members = {};                // of modes
    int number = 0;                               // of the ownership
};

// For the scripting service.
struct SetterRequest {
    enum class Kind { mute, solo, inputMonitor };

    TimePoint at;
    Kind kind;
    bool enabled = false; // not of input monitoring, which is switched over
    int tracks = 1;
    int number = 0;                // of the ownership
    int strip = -1;                // of input monitoring
    std::vector<int> members = {}; // of the others
};

struct Requests {
    std::vector<TimePoint> hellos;
    std::vector<TimePoint> panSides;
    std::vector<TimePoint> scans;
    std::vector<BankMoveRequest> bankMoves;
    std::vector<SeekRequest> seeks;
    std::vector<AutoModeRequest> autoModes;
    std::vector<PanSeekRequest> panSeeks;
    std::vector<WalkRequest> walks;
    std::vector<SetterRequest> setters;
};

Requests requestsIn(const Acceptance& acceptance);

} // namespace lumbrine::simulation
