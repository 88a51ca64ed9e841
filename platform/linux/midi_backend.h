// Chooses the MIDI system of this computer: JACK if a server answers, else ALSA if its sequencer opens, else JACK as
// soon as a server answers.
#pragma once

#include "platform/api/midi_connections.h"
#include "platform/api/midi_services.h"
#include "platform/api/runtime.h"

#include <memory>

namespace lumbrine {

// A process may create services or connections, not both. A JACK server that does not answer within two seconds counts
// as absent.
class MIDIBackend {
public:
    // Create it first in `main`, before other threads run: it sets an environment variable for libjack.
    MIDIBackend();

    // Never null, and returns at once. `found` is called once, on the main thread, when the system is known. Before
    // that, and while there is no MIDI system, every creation fails with -ENODEV or -ETIMEDOUT; once there is one, the
    // services say so (MIDIServices::onService). Call this and use the services on the main thread; only `received` may
    // be called on other threads.
    std::unique_ptr<MIDIServices> services(Runtime& runtime, Task found) const;

    // Looks for the system once and waits until it is known. Never null, but without a MIDI system every connection is
    // null.
    std::unique_ptr<MIDIConnections> connections(Runtime& runtime) const;
};

} // namespace lumbrine
