// Releases what a client has left touched that is not heard any more (when another one takes control, ClientCommands
// does). Called by the periodic tick. Main thread only.
#pragma once

#include "base/bilingual.h"
#include "model/hands/surfaces.h"
#include "model/mirror/client_endpoint.h"
#include "model/state/receiver_state.h"

#include <string>

namespace lumbrine {

class OwnerWatch {
public:
    OwnerWatch(Runtime& runtime, ReceiverState& state, Bilingual text, ClientEndpoint& endpoint, Surfaces& surfaces);

    // When the owner has gone, releases what it has touched.
    void watchOwner();

    // The clients in words, for the shell.
    void describeClients();

    // A client that has fallen silent, with a finger down maybe, holds nothing: releases every touched fader.
    void forgetTouches();

private:
    void letGo();
    std::string description();

    Runtime& runtime;
    ReceiverState& state;
    const Bilingual text;
    ClientEndpoint& endpoint;
    Surfaces& surfaces;
    bool ownerThere = false;
    bool isForgotten = false;
};

} // namespace lumbrine
