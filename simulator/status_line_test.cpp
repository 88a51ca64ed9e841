#include "simulator/status_line.h"

namespace lumbrine {
namespace {

SimulatorSnapshot playing() {
    SimulatorSnapshot snapshot;
    snapshot.width = 8;
    snapshot.offset = 8;
    snapshot.shownTracks = 38;
    snapshot.sessionOpen = true;
    snapshot.transport.playing = true;
    snapshot.transport.position = seconds(72.9);
    snapshot.surfaces.resize(1);
    snapshot.surfaces[0].connected = snapshot.surfaces[0].answering = true;
    for (auto& strip : snapshot.surfaces[0].strips)
        strip.display = "    ";
    snapshot.surfaces[0].strips[0].display = "Kick";
    snapshot.surfaces[0].strips[1].display = "Snr ";
    snapshot.surfaces[0].strips[1].touched = true;
    return snapshot;
}

TEST(StatusLine, ShowsSurfacesBankTransportAndStrips) {
    EXPECT_EQ(statusLine(playing(), true), "A on | 9-16 of 38 | playing 1:12 | Kick*Snr");
}

TEST(StatusLine, LeavesTheTimeOutWhereOnlyChangesMatter) {
    EXPECT_EQ(statusLine(playing(), false), "A on | 9-16 of 38 | playing | Kick*Snr");
}

TEST(StatusLine, ShowsWhichSurfacesAreThere) {
    SimulatorSnapshot snapshot = playing();
    snapshot.surfaces.resize(2);
    EXPECT_EQ(statusLine(snapshot, false), "A on, B gone | 9-16 of 38 | playing | Kick*Snr");
    snapshot.surfaces[1].connected = true;
    snapshot.surfaces[0].answering = false;
    EXPECT_EQ(statusLine(snapshot, false), "A off, B off | 9-16 of 38 | playing |");
}

TEST(StatusLine, ShowsTheTransport) {
    SimulatorSnapshot snapshot = playing();
    snapshot.surfaces.clear();
    snapshot.transport.recording = true;
    EXPECT_EQ(statusLine(snapshot, false), " | 9-16 of 38 | recording |");
    snapshot.transport = {};
    EXPECT_EQ(statusLine(snapshot, false), " | 9-16 of 38 | stopped |");
    snapshot.transport.recordReady = true;
    EXPECT_EQ(statusLine(snapshot, false), " | 9-16 of 38 | ready to record |");
}

TEST(StatusLine, ShowsWhereTheScriptingServiceIs) {
    SimulatorSnapshot snapshot = playing();
    snapshot.scriptingPort = 31416;
    EXPECT_EQ(statusLine(snapshot, false), "A on | 9-16 of 38 | playing | scripting on 31416 | Kick*Snr");
}

TEST(StatusLine, ShowsAnEmptyAndAMissingSession) {
    SimulatorSnapshot snapshot = playing();
    snapshot.shownTracks = 5;
    snapshot.offset = 0;
    EXPECT_EQ(statusLine(snapshot, false), "A on | 1-5 of 5 | playing | Kick*Snr");
    snapshot.shownTracks = 0;
    EXPECT_EQ(statusLine(snapshot, false), "A on | no tracks | playing | Kick*Snr");
    snapshot.sessionOpen = false;
    EXPECT_EQ(statusLine(snapshot, false), "A on | no session | playing | Kick*Snr");
}

TEST(StatusLine, ShowsNoControlCharacters) {
    SimulatorSnapshot snapshot;
    snapshot.sessionOpen = true;
    snapshot.surfaces.resize(1);
    snapshot.surfaces[0].answering = true;
    snapshot.surfaces[0].strips[0].display = "B\x18\x1D\x7F";
    EXPECT_THAT(statusLine(snapshot, false), testing::HasSubstr("B???"));
}

} // namespace
} // namespace lumbrine
