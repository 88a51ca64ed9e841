// The numbering of endpoints in the back ends.
#pragma once

#include "platform/api/midi_services.h"

namespace lumbrine {

constexpr MIDIEndpointRef firstDestination = 0x100; // sources are numbered from 1

} // namespace lumbrine
