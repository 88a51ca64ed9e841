// How long commands may wait, and how long the jobs that move the surfaces may take: their loops counted, their waits
// at the longest.
#pragma once

#include "platform/api/time.h"
#include "tests/simulation/requests.h"

namespace lumbrine::simulation {

// A session of that many tracks on that many strips.
struct SessionSize {
    int tracks;
    int strips;
};

// How old a command may be when it is carried out; an older one is dropped.
constexpr Duration modeTime = seconds(2); // and every other act on the surfaces
constexpr Duration setterTime = seconds(3);
constexpr Duration walkTime = seconds(10);

// How long after the last move of a fader there still is a hand on it.
constexpr Duration handRest = seconds(1.5);

// Of a client whose touches are forgotten then, at the latest by the next tick.
constexpr Duration silence = seconds(5);
constexpr Duration noticedSilence = seconds(5.4);

// Of a client that repeats the touches of resting fingers; so long after the first touch comes the second.
constexpr Duration repeatedSilence = seconds(1.5);
constexpr Duration shortestRepeat = seconds(0.25);
constexpr Duration longestRepeat = seconds(0.75);

// From the last target on: the way there and two corrections.
Duration seekLimit(SessionSize size);

// Both ways through the banks, 64 presses each, and back to where the user was.
Duration scanLimit(SessionSize size);

// Four attempts for each step and for the way back.
Duration walkLimit(const WalkRequest& walk, SessionSize size);

// From the end of all trouble until everything is right: who is in control is settled, what is under way ends, and at
// most two scans set the map right. Holds for a host that reacts within 0.2 s.
Duration recoveryLimit(SessionSize size);

} // namespace lumbrine::simulation
