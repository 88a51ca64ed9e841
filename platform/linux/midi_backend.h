// The MIDI system of this computer: JACK where a server answers, else ALSA where its sequencer opens, else none.
#pragma once

#include "platform/api/midi_connections.h"
#include "platform/api/midi_services.h"
#include "platform/api/runtime.h"

#include <memory>

namespace lumbrine {

// One process makes services or connections here, not both. Each looks for the system once, when it is called; a JACK
// server that has not answered after two seconds counts as none.
class MIDIBackend {
public:
    // First in `main`, before other threads run: sets an environment variable for JACK's library.
    MIDIBackend();

    // Never null, and returns at once. `found` is called on the main thread, once, when the system is known: before
    // that, and where there is none, every creation fails, with -ENODEV or -ETIMEDOUT. On the main thread, which uses
    // nothing of the services but `received` elsewhere.
    std::unique_ptr<MIDIServices> services(Runtime& runtime, Task found) const;

    // Never null. Where there is no MIDI system every connection is null. Waits until the system is known.
    std::unique_ptr<MIDIConnections> connections(Runtime& runtime) const;
};

} // namespace lumbrine
