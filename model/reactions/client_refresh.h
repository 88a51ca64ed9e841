// What happens from time to time for a client without an event: the shown state is sent again every third tick, because
// datagrams get lost, and what Pro Tools does not report by itself is asked for. Called by the periodic tick. Main
// thread only.
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

    ClientRefresh(ReceiverState& state, Parts parts);

    // One tick with a client present.
    void refresh();

private:
    void pollNextAutoMode();
    void resendTableIfDirty();

    ReceiverState& state;
    const Parts parts;
    int resyncTick = 0; // counts only while a client is present
    int autoPollRR = 0; // whose automation mode is asked next, modulo the window
};

} // namespace lumbrine
