// A tour of the receiver that needs no keyboard. Two clients touch and move faders, press buttons, seek to other
// tracks, are refused and take over control. For each step the tour prints what was sent, what the simulated Pro Tools
// did, what came back, and how long that took.
#pragma once

#include "tools/demo_programme.h"
#include "tools/demo_stage.h"

#include <functional>
#include <vector>

namespace lumbrine {

class DemoTour {
public:
    // `done` is called once, at the end.
    DemoTour(DemoStage::Given given, std::function<void(bool succeeded)> done);

    // Call it on the main thread. Returns at once; the tour goes on in jobs of the main queue.
    void start() { begin(); }

private:
    void begin();
    void look(std::size_t phone);
    void goOn();
    void giveUp(std::size_t step);
    void finish(bool succeeded);
    void tellRoundTrips();

    const std::function<void(bool)> done;
    DemoStage stage;
    const std::vector<DemoStep> steps;
    std::size_t current = 0;
    bool waiting = false;
    bool ended = false;
    std::vector<double> roundTrips; // milliseconds
};

} // namespace lumbrine
