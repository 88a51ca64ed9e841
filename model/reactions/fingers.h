// The fingers of the client in control on its faders, from touch to release.
//
// A finger that rests sends nothing, so a client may repeat its touch every half second. When such a client falls
// silent, it has lost the network: what it holds is released after 1.5 s. What other clients hold is released when
// they count as gone (OwnerWatch).
//
// A finger that was on a fader when a job took the surfaces is on another track since. It does nothing until it is
// lifted and put down again, so a repeated touch must not count as a new one.
#pragma once

#include "base/strip.h"
#include "model/hands/surfaces.h"
#include "model/mirror/client_mirror.h"
#include "model/state/jobs.h"
#include "model/state/receiver_state.h"

#include <array>
#include <atomic>
#include <optional>

namespace lumbrine {

class Fingers {
public:
    static constexpr Duration silence = seconds(1.5);

    // The first touch that is so long after another one of the same strip, with no release between, shows that the
    // client repeats touches. A network that doubles datagrams is quicker, and a finger whose release was lost is
    // rarely back so soon.
    static constexpr Duration shortestRepeat = seconds(0.25);
    static constexpr Duration longestRepeat = seconds(0.75);

    Fingers(const Jobs& jobs, ReceiverState& state, Surfaces& surfaces, ClientMirror& mirror);

    // ---- Receive thread. The datagrams of the client in control, with the time of their arrival. Allocates nothing.

    void touch(Strip strip, TimePoint arrived);
    void release(Strip strip);

    // Another device is in control: releases what the former one held.
    void newOwner();

private:
    bool isRepeat(Strip strip, TimePoint arrived);
    void awaitSilence();
    void look();

    const Jobs& jobs;
    ReceiverState& state;
    Surfaces& surfaces;
    ClientMirror& mirror;
    std::array<std::optional<TimePoint>, stripCount> touched; // of the fingers that are down; receive thread
    std::atomic<bool> repeats{false};                         // the client is known to repeat touches
    bool awaiting = false;                                    // a look at the silence is to come; main thread
};

} // namespace lumbrine
