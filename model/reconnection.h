// Having Pro Tools take hold of the MIDI ports anew, by opening and closing its Peripherals dialog on the screen.
//
// This version does not touch the screen: a request is accepted and nothing comes of it.
#pragma once

namespace lumbrine {

class Reconnection {
public:
    // Main thread.
    void reconnectToPT() {}
};

} // namespace lumbrine
