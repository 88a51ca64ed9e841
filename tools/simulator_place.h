// The computer that lumbrine-simulator runs on: its event loop, its MIDI system, and its screen. Each system has its
// own file: tools/linux/, tools/macos/.
#pragma once

#include "platform/api/main_loop.h"
#include "platform/api/midi_connections.h"
#include "platform/api/runtime.h"
#include "simulator/simulated_pro_tools.h"

#include <memory>

namespace lumbrine {

class SimulatorPlace {
public:
    // Call it first in `main`, on the main thread.
    static std::unique_ptr<SimulatorPlace> make();

    virtual ~SimulatorPlace() = default;

    virtual MainLoop& loop() = 0;

    // Runs the event loop on the main thread until the loop is stopped.
    virtual void run() = 0;

    // Never null, but without a MIDI system every connection is.
    virtual std::unique_ptr<MIDIConnections> midi(Runtime& runtime) = 0;

    // Shows the screen where other programs can read it, as long as the result lives. Null where none can. Call it, and
    // let go of the result, on the main thread.
    virtual std::shared_ptr<void> show(Runtime& runtime, SimulatedProTools& proTools) = 0;
};

} // namespace lumbrine
