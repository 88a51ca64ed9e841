// What sessions of tests are made of: names, and edits of a session's tracks.
#pragma once

#include "simulator/simulated_pro_tools.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace lumbrine {

using Names = std::vector<std::string>;
using MakeSession = std::function<SimulatedSession()>;
using Edit = std::function<void(SimulatedSession&)>;

// ---- Names

Names operator+(Names left, const Names& right);
Names equal(std::size_t count, const std::string& name);
Names repeated(const Names& names, int times);
Names counted(const std::string& name, int count); // "Vox 1", "Vox 2" and so on
Names some(int from, int to);                      // of many names that differ on every display
Names with(Names names, std::size_t at, const std::string& name);

// ---- Sessions

MakeSession named(Names names);  // with a fader of its own for each track
MakeSession flat(Names names);   // with all faders at one place, as in a new session
MakeSession numbered(int count); // some names
MakeSession edited(const Names& names, Edit edit);

SimulatedTrack trackCalled(const std::string& name);
int idOf(const SimulatedSession& session, std::size_t index);

} // namespace lumbrine
