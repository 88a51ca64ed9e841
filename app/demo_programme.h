// What is played in the demo's tour.
#pragma once

#include "app/demo_stage.h"

#include <optional>
#include <vector>

namespace lumbrine {

// One thing that a phone does, and the answer that it has to get.
struct DemoStep {
    std::size_t phone; // who acts and hears the answer
    std::string says;
    std::function<void()> act;
    std::function<std::optional<std::string>()> answer; // looked at after each message; what came back, in words
    bool isRoundTrip = true;                            // else it takes presses and waits, and seconds
    Duration patience = seconds(4);
};

// The steps in their order. The stage outlives them.
std::vector<DemoStep> demoProgramme(DemoStage& stage);

} // namespace lumbrine
