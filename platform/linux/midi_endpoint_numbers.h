// How the back ends number the endpoints that they make.
#pragma once

#include "platform/api/midi_services.h"

namespace lumbrine {

constexpr MIDIEndpointRef firstDestination = 0x100; // apart from the sources

} // namespace lumbrine
