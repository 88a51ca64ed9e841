// Follows who owns the client link, and releases the faders that a former owner left touched. Called by the periodic
// tick. Main thread only.
#pragma once

#include "base/bilingual.h"
#include "model/hands/surfaces.h"
#include "model/mirror/client_endpoint.h"
#include "model/state/receiver_state.h"

#include <optional>
#include <string>

namespace lumbrine {

class OwnerWatch {
public:
    OwnerWatch(ReceiverState& state, Bilingual text, ClientEndpoint& endpoint, Surfaces& surfaces);

    // When the owner has changed or gone, releases every touched fader on its surface.
    void watchOwner();

    // The clients in words, for the shell.
    void describeClients();

    // Without a client nothing counts as touched. Sends nothing.
    void forgetTouches();

private:
    std::string description();

    ReceiverState& state;
    const Bilingual text;
    ClientEndpoint& endpoint;
    Surfaces& surfaces;
    std::optional<std::string> prevOwnerID;
};

} // namespace lumbrine
