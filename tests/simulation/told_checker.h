// What a client is told is so. Judged by the host's own tracks (simulator/host_record.h), from what the receiver sent.
#pragma once

#include "tests/simulation/evidence.h"
#include "tests/simulation/owner_oracle.h"
#include "tests/simulation/scenario.h"
#include "tests/simulation/shown_tracks.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

// At every telling: the fader, the full name and the colour of a strip, and all that is in a row, are those of the
// track that its name stands for, now or at an earlier time; never another's. (A strip's full name and colour may
// belong to the position that is told with them, where a seek is going.)
std::vector<std::string> checkTellings(const Scenario& scenario, const Evidence& evidence, const ShownTracks& shown);

// At every quiet moment (for three seconds no job, no trouble, nothing asked of a strip, nothing changed at the host,
// and a client is there), all that the client in control was told of the strips, and of the rows of the tracks on them,
// is the host's or unknown. The other rows have what their track had since the strips last showed it at such a moment:
// nobody can know more. Flashing lights count as either; a mute, a solo, a record enable and a monitor that were never
// known are told as off. Automation modes are asked for one strip after the other, so they may be half a minute old.
std::vector<std::string> checkQuietMoments(const Scenario& scenario, const Evidence& evidence,
                                           const Acceptance& acceptance);

} // namespace lumbrine::simulation
