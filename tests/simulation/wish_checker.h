// What a client asks for by way of the scripting service happens to the tracks that it was shown, and means what it was
// shown. Judged by the host's own tracks (simulator/host_record.h, shown_tracks.h).
//
// A group is the tracks in the rows of its members when the datagram came; an input monitor is that of the track that
// the strip stood for. The service knows tracks by their names alone: where the host has put another track in the place
// of one that is gone, by the same name, nobody could have known.
#pragma once

#include "tests/simulation/evidence.h"
#include "tests/simulation/owner_oracle.h"
#include "tests/simulation/requests.h"
#include "tests/simulation/shown_tracks.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

// Every switch that the service turned was one that somebody asked for, on a track that was meant.
std::vector<std::string> checkTracksOfWishes(const Evidence& evidence, const ShownTracks& shown,
                                             const Acceptance& acceptance, const Requests& requests);

// An input monitor is switched to what its client was not shown when it asked.
std::vector<std::string> checkToggles(const Evidence& evidence, const ShownTracks& shown, const Acceptance& acceptance,
                                      const Requests& requests);

} // namespace lumbrine::simulation
