// What the client gets from time to time without an event: the whole state every third tick, because datagrams get
// lost, and the upkeep of what the receiver must ask for. Driven by the periodic tick. Main thread only.
#pragma once

#include "model/hands/automation_modes.h"
#include "model/mirror/client_mirror.h"
#include "model/mirror/track_table.h"
#include "model/tracks/track_metadata.h"

namespace lumbrine {

class ClientRefresh {
public:
    struct Parts {
        ClientMirror& mirror;
        TrackTable& table;
        AutomationModes& automation;
        TrackMetadata& metadata;
    };

    ClientRefresh(ReceiverState& receiverState, Parts otherParts);

    // One tick with a client present.
    void refresh();

private:
    void resendState();
    void pollNextAutoMode();
    void resendTableIfDirty();

    ReceiverState& state;
    const Parts parts;
    int resyncTick = 0; // counts only while a client is present
    int autoPollRR = 0; // whose automation mode is asked next, modulo the window
};

} // namespace lumbrine
