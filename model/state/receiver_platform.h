// The seams to the computer that a ReceiverModel runs on.
#pragma once

#include "platform/api/accessibility.h"
#include "platform/api/datagram_sockets.h"
#include "platform/api/json.h"
#include "platform/api/midi_services.h"
#include "platform/api/runtime.h"
#include "platform/api/secrets.h"
#include "platform/api/service_discovery.h"
#include "platform/api/stream_socket.h"
#include "platform/api/system_info.h"
#include "ptsl/ptsl_client.h"

namespace lumbrine {

// Everything in it outlives the model.
struct ReceiverPlatform {
    Runtime& runtime;
    MIDIServices& midi;
    DatagramSockets& sockets;
    ServiceAdvertiser& advertiser;
    const SystemInfo& system;
    StreamSockets& streams;
    JSON& json;
    Accessibility& accessibility;
    PTSLAddress scripting = {}; // where Pro Tools' scripting service is
    Secrets* secrets = nullptr; // null where no client can seal; a receiver for paired clients then opens no port
};

} // namespace lumbrine
