// The MIDI system of this computer: JACK where a server answers, else ALSA where its sequencer opens, else none.
#pragma once

#include "platform/api/midi_connections.h"
#include "platform/api/midi_services.h"
#include "platform/api/runtime.h"

#include <memory>

namespace lumbrine {

// Never null. Where there is no MIDI system every creation fails with -ENODEV. Looks for the system once, now; call it
// before other threads run, since it sets an environment variable for JACK's library.
std::unique_ptr<MIDIServices> makeMIDIServices(Runtime& runtime);

// Never null. Where there is no MIDI system every connection is null. One process makes services or connections here,
// not both.
std::unique_ptr<MIDIConnections> makeMIDIConnections(Runtime& runtime);

} // namespace lumbrine
