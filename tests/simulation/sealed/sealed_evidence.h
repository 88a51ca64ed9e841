// What a session of sealing clients leaves behind: all that its checkers get to see of it.
#pragma once

#include "simulator/simulated_pro_tools.h"
#include "tests/simulation/recording_sockets.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

// A datagram on its way from a phone, before the network has lost or doubled it.
struct MadeDatagram {
    TimePoint at;
    int phone = 0;
    Bytes bytes;
};

// A stretch of time.
struct Silence {
    TimePoint first;
    TimePoint last;
};

// Where a finger has left a fader at the end.
struct LastFinger {
    int strip = 0;
    int value = 0; // 0-16383
};

struct SealedEvidence {
    TimePoint begun; // of the trouble
    std::vector<MadeDatagram> made;
    std::vector<ReceivedDatagram> arrived; // at the receiver, of phones and of others
    SentDatagrams sent;                    // by the receiver
    std::vector<std::vector<ReceivedPacket>> surfaces;

    std::vector<Silence> withoutKey; // no client had a key that the receiver knows
    Silence afterAll;                // the phones had gone, only others spoke
    bool anybodyConnected = false;   // at the end of that

    std::vector<LastFinger> fingers;
    std::vector<int> faders; // of the host, by strip, when the fingers had left them
    int forgeries = 0;
};

} // namespace lumbrine::simulation
