// What the client's messages do. Datagrams come on the UDP receive thread; presses go to the surfaces from there at
// once, whatever touches the state hops to the main thread.
#pragma once

#include "client_link/ownership.h"
#include "model/bank/group_operations.h"
#include "model/bank/seek_worker.h"
#include "model/bank/visible_range_walk.h"
#include "model/hands/pan.h"
#include "model/reactions/fingers.h"
#include "model/reactions/hello_response.h"
#include "model/tracks/track_metadata.h"
#include "model/tracks/track_wishes.h"

namespace lumbrine {

class ClientCommands {
public:
    struct Parts {
        Surfaces& surfaces;
        ClientMirror& mirror;
        HelloResponse& hello;
        Fingers& fingers;
        DeskQueue& queue;
        Pan& pan;
        SeekWorker& seekWorker;
        Calibration& calibration;
        TrackMetadata& metadata;
        TrackWishes& wishes;
        AutomationModes& automation;
        GroupOperations& groups;
        VisibleRangeWalk& visibleRange;
        DroppedCommands& drops;
    };

    ClientCommands(const Jobs& jobs, ReceiverState& state, Parts parts);

    // One datagram of the owner, and its sender, to whom the answers go. A malformed one is dropped. Faders, touches
    // and V-Pots go from here to the MIDI ports without allocation or log line.
    void handleUDP(ByteView bytes, const Sender& sender);

private:
    class Execution;

    void takeControl(Ownership owner);

    const Jobs& jobs;
    ReceiverState& state;
    const Parts parts;
    Ownership current; // receive thread
};

} // namespace lumbrine
