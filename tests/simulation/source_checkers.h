// What must hold of full names, colours and comments: they come from where they may, and are never another track's.
#pragma once

#include "tests/simulation/evidence.h"
#include "tests/simulation/scenario.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

// While the tracks of the session stay the same and the map is right, every name, colour and comment is that of the
// track at its place, or is not known.
std::vector<std::string> checkToldTracks(const std::vector<ToldTracks>& told, const std::vector<HostTrack>& tracks);

// The log names a source of names only when it is there.
std::vector<std::string> checkNamedSources(const Sources& sources, const JobRecord& jobs);

// The log tells once at most that the scripting service is away, and that it is there only where it can be.
std::vector<std::string> checkToldLosses(const Sources& sources, const JobRecord& jobs);

// The rows that the client has at the end are what the receiver tells of the tracks; and nothing on the screen is held
// any more.
std::vector<std::string> checkRows(const Evidence& evidence);

// All of these.
std::vector<std::string> checkSources(const Scenario& scenario, const Evidence& evidence);

} // namespace lumbrine::simulation
