// A user who keeps working on the host's own screen: banks, scrolls, renames, adds, removes, hides and reorders tracks,
// changes automation modes, plays, records and stops. The seed decides when and how.
#pragma once

#include "simulator/seeded_random.h"
#include "simulator/simulated_hui_host.h"
#include "simulator/simulated_session.h"

namespace lumbrine {

class RestlessUser {
public:
    // Acts again and again after 0.5 to 1.5 times `every`; never when it is 0. Session and host must outlive the
    // user.
    RestlessUser(SimulatedSession& session, SimulatedHUIHost& host, Duration every, std::uint64_t seed);

    void advance(TimePoint now);
    void rest(); // stops acting for good
    TimePoint nextDeadline() const { return next; }

private:
    void plan(TimePoint now);
    void act();
    void useTransport();
    int anyTrack();

    SimulatedSession& session;
    SimulatedHUIHost& host;
    Duration every;
    SeededRandom chance;
    TimePoint next;
    bool planned = false;
    int given = 0; // names invented so far
};

} // namespace lumbrine
