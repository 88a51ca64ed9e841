// Recordings of simulated sessions that are kept: what the receiver did in them is compared with what it does today.
#pragma once

#include <filesystem>

namespace lumbrine::simulation {

std::filesystem::path eveningsFolder();

// Replaces the recordings in the folder by new ones, of sessions of every kind. False when that fails.
bool writeEvenings(const std::filesystem::path& folder);

} // namespace lumbrine::simulation
