// What may go wrong with the computer and the network around the receiver. Each kind has a name, under which it is
// drawn by itself and can be switched off in not_yet.h.
#pragma once

#include "platform/virtual/virtual_runtime.h"
#include "tests/simulation/not_yet.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace lumbrine::simulation {

struct Scenario;

struct Hardships {
    bool threadStandsStill = false; // one of the receiver's, for 20-500 ms
    bool mainThreadStalls = false;  // for up to 4 s
    bool machineSleeps = false;     // for minutes
    bool wiFiGoesSilent = false;    // for 0.5-6 s, for one phone or for all
    bool datagramsStray = false;    // and arrive up to 3 s later
    bool phonesMove = false;        // to another address, with a fader in hand
    bool socketIsFull = false;      // so that nothing can be sent for a while
    bool secondReceiver = false;    // on the network, with datagrams forged between the two
    bool falseReceiver = false;     // on the network: answers every sender as a receiver would

    TimerOrder timerOrder = TimerOrder::whenDue; // of the main thread that is late

    // Whether a datagram can come from somebody who takes the receiver for a client.
    bool strangers() const { return secondReceiver || falseReceiver; }

    std::string text() const; // their names
};

Hardships hardshipsOf(std::uint64_t seed, const Switches& switches);

// How the runtime of such a session is made.
VirtualRuntime::Options runtimeOptions(const Scenario& scenario);

} // namespace lumbrine::simulation
