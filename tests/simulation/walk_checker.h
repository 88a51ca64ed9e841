// What a client asks of a group reaches every member, or the log says how many it reached; and afterwards the surfaces
// show what they showed before. On every host; judged by the host's own tracks and bank (simulator/host_record.h).
#pragma once

#include "tests/simulation/evidence.h"
#include "tests/simulation/owner_oracle.h"
#include "tests/simulation/requests.h"
#include "tests/simulation/shown_tracks.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

// A member is reached when the host was asked to do to its track what was asked: this fader, this mode. Members that a
// newer wish of the same kind names are the newer one's, and what a former owner asked for may be dropped. Accounted
// for are members that were not reached by a line about groups, by the end of that very walk: "n of m" with those
// numbers, or one that tells of a drop or an abort.
std::vector<std::string> checkMembers(const Evidence& evidence, const ShownTracks& shown, const Acceptance& acceptance,
                                      const Requests& requests);

// Unless the host, its user or the client moved the banks meanwhile.
std::vector<std::string> checkReturns(const Evidence& evidence, const Requests& requests);

} // namespace lumbrine::simulation
