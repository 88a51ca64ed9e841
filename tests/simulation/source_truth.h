// What the host has to tell of its tracks by its scripting service and its screen, and whether the receiver has it.
#pragma once

#include "model/state/receiver_state.h"
#include "tests/simulation/host_truth.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

struct HostTrack {
    int id = 0;
    std::string display; // as HostView has it
    std::string name;
    RGBColor color = 0;
    std::string comment;
};

// Of "#aarrggbb".
RGBColor colorOf(const std::string& argb);

// Those that are shown, in their order.
std::vector<HostTrack> tracksOf(const SimulatedProTools& proTools);

Names displaysOf(const std::vector<HostTrack>& tracks);

// A remark by which it can be told whose it is.
std::string commentOn(int trackID, std::uint64_t remark);
bool isCommentOn(int trackID, const std::string& comment);

// Which of it the receiver can learn.
struct Sources {
    bool scripting = false; // the service is there
    bool screen = false;    // the user lets the receiver read the screen
};

// What is wrong with what it has learned, when it has had the time, in words; empty when nothing is. The map is right.
std::string wrongWithSources(const Sources& sources, const ReceiverState& state, const SimulatedProTools& proTools);

} // namespace lumbrine::simulation
