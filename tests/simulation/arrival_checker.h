// Nothing is lost without a word: a seek that is admitted arrives. It has arrived when the bank begins with the track
// that the client was shown in the row of its target, or is the session's last full one and has that track; by the
// host's own tracks and bank (simulator/host_record.h).
//
// Admitted is a wish that meets no scan and no walk and is for a row that the client was told. The newest wish wins, so
// that one followed by another move of the banks is the other's; and where the host was disturbed or its user moved the
// banks or the tracks, there is nothing to arrive at. Nor where the receiver's map is not the session's, because tracks
// have changed or share names, and the log tells that the move was dropped.
#pragma once

#include "tests/simulation/evidence.h"
#include "tests/simulation/owner_oracle.h"
#include "tests/simulation/requests.h"
#include "tests/simulation/scenario.h"
#include "tests/simulation/shown_tracks.h"
#include "tests/simulation/surface_wire.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

// `checker` names what made it difficult, which is a checker of its own: "arrivals" when there was nothing.
struct LostSeek {
    std::string checker;
    std::string text;
};

std::vector<LostSeek> checkArrivals(const Scenario& scenario, const Evidence& evidence, const ShownTracks& shown,
                                    const Acceptance& acceptance, const Requests& requests,
                                    const SurfaceActions& wires);

// Taps of the bank and channel buttons in quick succession lead where so many buttons of the host lead, or so many
// banks and tracks on, also when they come faster than the host moves.
std::vector<std::string> checkTaps(const Scenario& scenario, const Evidence& evidence, const Acceptance& acceptance,
                                   const Requests& requests);

// Scans disturb the user: one that ends with the same map as the one before, without a client's wish and without any
// change at the host between them, may follow once, and not again.
std::vector<std::string> checkScanRepeats(const Evidence& evidence, const Requests& requests);

} // namespace lumbrine::simulation
