// Each screen/testdata/NAME.tree is a screen. NAME.expected lists what is read from it and what a reconnection does.
#include "screen/pt_mix_comments.h"
#include "screen/pt_track_list.h"
#include "screen/testing/reconnector_test.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace lumbrine {
namespace {

namespace fs = std::filesystem;

std::string textOf(const fs::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class ScreenFixtureTest : public ReconnectorTest {
protected:
    // What is read of the session, with the names in the track list as those that are known.
    std::string session() {
        std::ostringstream told;
        const Snapshot snapshot = broughtBy(PTTrackList::read(screen, runtime)).value_or(Snapshot());
        told << "tracks: " << snapshot.names.size() << "\n";
        for (const std::string& name : snapshot.names)
            told << "  " << name << "\n";
        told << "selected: " << (snapshot.selectedIndex ? std::to_string(*snapshot.selectedIndex) : "none") << "\n";
        const auto comments = broughtBy(PTMixComments::read(screen, runtime, snapshot.names));
        told << "comments: " << (comments ? std::to_string(comments->size()) : "none") << "\n";
        for (const auto& [name, comment] : comments.value_or(std::map<std::string, std::string>()))
            told << "  " << name << ": \"" << comment << "\"\n";
        return told.str();
    }

    std::string reconnection() {
        const std::string outcome = run();
        std::ostringstream told;
        told << "reconnection: " << milliseconds(took) << " ms\n";
        for (const std::string& press : presses)
            told << "  " << press << "\n";
        told << "  " << outcome << "\n";
        return told.str();
    }
};

TEST_F(ScreenFixtureTest, EveryScreenIsReadAsItsNeighbourSays) {
    int screens = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(LUMBRINE_SOURCE_DIR "/screen/testdata")) {
        if (entry.path().extension() != ".tree") continue;
        SCOPED_TRACE(entry.path().filename());
        show(textOf(entry.path()));
        const std::string read = session();
        EXPECT_EQ(read + reconnection(), textOf(fs::path(entry.path()).replace_extension(".expected")));
        screen.quit(process);
        ++screens;
    }
    EXPECT_EQ(screens, 5);
}

} // namespace
} // namespace lumbrine
