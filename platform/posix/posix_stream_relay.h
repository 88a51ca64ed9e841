// Relays on the system's own TCP sockets, each with one thread that waits for all its connections.
#pragma once

#include "platform/api/stream_relay.h"

namespace lumbrine {

class PosixStreamRelays final : public StreamRelays {
public:
    std::unique_ptr<StreamRelay> start(RelaySetup setup) override;
};

} // namespace lumbrine
