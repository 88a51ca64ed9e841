// The MIDI system of this computer: JACK where a server answers, else ALSA where its sequencer opens, else none.
#pragma once

#include "platform/api/midi_connections.h"
#include "platform/api/midi_services.h"
#include "platform/api/runtime.h"

#include <memory>

namespace lumbrine {

// One process makes services or connections here, not both. Each looks for the system once, when it is called.
class MIDIBackend {
public:
    // First in `main`, before other threads run: sets an environment variable for JACK's library.
    MIDIBackend();

    // Never null. Where there is no MIDI system every creation fails with -ENODEV.
    std::unique_ptr<MIDIServices> services(Runtime& runtime) const;

    // Never null. Where there is no MIDI system every connection is null.
    std::unique_ptr<MIDIConnections> connections(Runtime& runtime) const;
};

} // namespace lumbrine
