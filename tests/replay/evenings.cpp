#include "tests/replay/evenings.h"

#include "blackbox/support/recording_file.h"
#include "tests/replay/taped_session.h"

#include <cstdint>
#include <iostream>
#include <set>
#include <string>

namespace lumbrine::simulation {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostEvenings = 30;
constexpr std::uint64_t seedsToLookAt = 400;
constexpr int mostTracks = 40;
constexpr Duration longestTrouble = seconds(8);
constexpr std::uintmax_t mostFileBytes = 50'000; // of one, compressed

// "the host sticks", "storms of commands": what a scenario has and others may not.
std::set<std::string> kindsOf(const Scenario& scenario) {
    std::set<std::string> kinds{std::to_string(scenario.host.surfaces) + " surfaces",
                                std::to_string(scenario.phones) + " phones"};
    std::string text = scenario.text();
    text.erase(0, text.find("jitter"));
    for (std::size_t at = text.find(", "); at != std::string::npos; at = text.find(", ", at + 2))
        kinds.insert(text.substr(at + 2, text.find(", ", at + 2) - at - 2));
    return kinds;
}

// Where what a seed brings is new, or anything will do.
bool write(const fs::path& folder, std::uint64_t seed, std::set<std::string>& known, bool anything) {
    Scenario scenario = tapedScenario(seed);
    scenario.trouble = std::min(scenario.trouble, longestTrouble);
    if (scenario.tracks > mostTracks) return false;
    std::set<std::string> all = known;
    all.merge(kindsOf(scenario));
    if (all.size() == known.size() && !anything) return false;
    const fs::path path = folder / ("seed-" + std::to_string(seed) + ".blackbox");
    if (fs::exists(path) || !blackbox::saveRecording(path, tapeOf(scenario))) return false;
    if (fs::file_size(path) > mostFileBytes) {
        fs::remove(path);
        return false;
    }
    known = std::move(all);
    return true;
}

} // namespace

fs::path eveningsFolder() {
    return fs::path(LUMBRINE_SOURCE_DIR) / "tests/replay/evenings";
}

bool writeEvenings(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    for (const auto& entry : fs::directory_iterator(folder, error))
        if (entry.path().extension() == ".blackbox") fs::remove(entry.path(), error);
    if (error) return false;
    std::set<std::string> known;
    std::size_t count = 0;
    for (const bool anything : {false, true})
        for (std::uint64_t seed = 1; seed <= seedsToLookAt && count < mostEvenings; ++seed)
            if (write(folder, seed, known, anything)) ++count;
    std::cout << count << " evenings, " << known.size() << " kinds\n";
    return count == mostEvenings;
}

} // namespace lumbrine::simulation
