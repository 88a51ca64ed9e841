// Follows who the owner of the client link is, and lets go of the faders that an owner leaves held. Looked at by the
// periodic tick. Main thread only.
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
    OwnerWatch(ReceiverState& receiverState, ClientEndpoint& clientEndpoint, Surfaces& hostSurfaces,
               Bilingual bilingual);

    // Another owner than before, or none any more: every fader that counts as held is released on its surface.
    void watchOwner();

    // The clients in words, for the shell.
    void describeClients();

    // A client that has fallen silent holds nothing any more. Sends nothing.
    void forgetTouches();

private:
    std::string description();

    ReceiverState& state;
    ClientEndpoint& endpoint;
    Surfaces& surfaces;
    const Bilingual text;
    std::optional<std::string> prevOwnerID;
};

} // namespace lumbrine
