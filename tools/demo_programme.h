// The steps of the demo's tour.
#pragma once

#include "tools/demo_stage.h"

#include <optional>
#include <vector>

namespace lumbrine {

// One action of a phone, and the answer that it must get.
struct DemoStep {
    std::size_t phone; // sends the action and receives the answer
    std::string says;  // the action in words
    std::function<void()> act;
    // Called after each message to the phone. Returns the answer in words; empty while it has not come yet.
    std::function<std::optional<std::string>()> answer;
    bool isRoundTrip = true; // one command and one answer; otherwise several presses with waits, which take seconds
    Duration patience = seconds(4); // the tour fails if the answer takes longer
};

// The steps in order. The stage must outlive them.
std::vector<DemoStep> demoProgramme(DemoStage& stage);

} // namespace lumbrine
