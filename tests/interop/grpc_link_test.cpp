// The scripting link against the simulated Pro Tools' service on the official gRPC library.
#include "platform/virtual/memory_midi.h"
#include "simulator/default_session.h"
#include "simulator/grpc/grpc_scripting_server.h"
#include "simulator/simulated_pro_tools.h"
#include "tests/interop/link_rig.h"
#include "tests/interop/waiting.h"

#include <thread>

namespace lumbrine::interop {
namespace {

class GrpcLink : public LinkTest {
protected:
    void start(const SimulatorOptions& options = {}, int tracks = 24, SessionStyle style = {}) {
        server.reset();
        proTools = std::make_unique<SimulatedProTools>(runtime, midi, options, defaultSession(tracks, 1, style));
        serve(0);
    }

    void serve(std::uint16_t wanted) {
        server = std::make_unique<GrpcScriptingServer>(runtime, proTools->scripting(), wanted);
        ASSERT_TRUE(server->port());
        port = *server->port();
    }

    void stop() { server.reset(); }

    void restart() {
        stop();
        proTools->scripting().restart();
        serve(port);
    }

    // What the service has to tell of a session, by the session itself.
    static std::vector<PTSLTrack> picture(const SimulatedSession& session) {
        std::vector<PTSLTrack> tracks;
        for (const SimulatedTrack& track : session.tracks())
            tracks.push_back({.index = static_cast<std::int64_t>(tracks.size()) + 1,
                              .name = track.name,
                              .color = parseColor(track.color),
                              .isSelected = track.selected,
                              .isInputMonitoringOn = track.inputMonitor,
                              .isHidden = track.hidden || session.hiddenByFolder(track),
                              .isInactive = track.inactive,
                              .isMuted = track.mute,
                              .isSoloed = track.solo,
                              .isRecordEnabled = track.recordArmed,
                              .id = "track-" + std::to_string(track.id)});
        return tracks;
    }

    MemoryMIDI midi{runtime};
    std::unique_ptr<SimulatedProTools> proTools;
    std::unique_ptr<GrpcScriptingServer> server;
    std::uint16_t port = 0;
};

TEST_F(GrpcLink, ReadsEverySpellingOfOneSessionAlike) {
    std::vector<SimulatorOptions> choices(5);
    choices[1].scripting.attributes = AttributeSpelling::prefixedNames;
    choices[2].scripting.attributes = AttributeSpelling::numbers;
    choices[3].scripting.camelCase = true;
    choices[4].scripting.armedMonitors = true;
    for (const SimulatorOptions& options : choices) {
        start(options, 40, {.folders = 2});
        proTools->edit([](SimulatedSession& session) {
            session.select(7, false);
            session.change(8, [](SimulatedTrack& track) { track.inputMonitor = track.solo = true; });
            session.change(9, [](SimulatedTrack& track) { track.recordArmed = track.mute = track.inactive = true; });
        });
        const auto client = clientOf(port);
        const auto tracks = client->trackList();
        ASSERT_TRUE(tracks) << errorOf(tracks);
        EXPECT_EQ(*tracks, picture(proTools->session()));
    }
}

TEST_F(GrpcLink, SetsWhatTheSurfacesShow) {
    start();
    const auto client = clientOf(port);
    EXPECT_EQ(errorOf(client->setMute({"Kick In", "ギターソロ"}, true)), "no error");
    EXPECT_EQ(errorOf(client->setSolo({"Snare Top"}, true)), "no error");
    EXPECT_EQ(errorOf(client->setInputMonitor("Rhodes", true)), "no error");
    const SimulatedSession session = proTools->session();
    EXPECT_TRUE(session.findByName("Kick In")->mute && session.findByName("ギターソロ")->mute);
    EXPECT_TRUE(session.findByName("Snare Top")->solo);
    EXPECT_TRUE(session.findByName("Rhodes")->inputMonitor);
    const auto tracks = client->trackList();
    ASSERT_TRUE(tracks) << errorOf(tracks);
    EXPECT_EQ(*tracks, picture(session));
}

TEST_F(GrpcLink, ReportsWhyTheServiceRefusesACommand) {
    start();
    const auto client = clientOf(port);
    EXPECT_EQ(errorOf(client->setMute({"Nobody"}, true)),
              R"(PTSL command failed: {"errors":[{"command_error_type":107,)"
              R"("command_error_message":"There is no track \"Nobody\"","is_warning":false}]})");
    proTools->edit([](SimulatedSession& session) { session.close(); });
    EXPECT_THAT(errorOf(client->trackList()), testing::HasSubstr("\"command_error_type\":106"));
    proTools->scripting().refuseNext(100);
    EXPECT_THAT(errorOf(client->trackList()), testing::HasSubstr("\"command_error_type\":138"));
}

TEST_F(GrpcLink, ReadsAnEmptySessionInBothSpellings) {
    SimulatorOptions options;
    for (const bool asObject : {false, true}) {
        options.scripting.emptyListAsObject = asObject;
        start(options, 0);
        const auto tracks = clientOf(port)->trackList();
        ASSERT_TRUE(tracks) << errorOf(tracks);
        EXPECT_TRUE(tracks->empty());
    }
}

// The first requests of a connection: the service takes no frame of more than 16,384 bytes yet.
TEST_F(GrpcLink, SetsHundredsOfTracksBeforeAnythingElse) {
    start({}, 1000, {.japaneseNames = true});
    std::vector<std::string> names;
    const SimulatedSession session = proTools->session();
    for (const SimulatedTrack& track : session.tracks())
        names.push_back(track.name);
    EXPECT_EQ(errorOf(clientOf(port)->setMute(names, true)), "no error");
    EXPECT_TRUE(std::ranges::all_of(proTools->session().tracks(), &SimulatedTrack::mute));
}

TEST_F(GrpcLink, ListsAndSetsHundredsOfTracks) {
    for (const int count : {500, 1000}) {
        start({}, count, {.japaneseNames = count == 1000});
        const auto client = clientOf(port);
        const auto tracks = client->trackList();
        ASSERT_TRUE(tracks) << errorOf(tracks);
        EXPECT_EQ(*tracks, picture(proTools->session()));
        std::vector<std::string> names;
        for (const PTSLTrack& track : *tracks)
            names.push_back(track.name);
        EXPECT_EQ(errorOf(client->setMute(names, true)), "no error");
        EXPECT_TRUE(std::ranges::all_of(proTools->session().tracks(), &SimulatedTrack::mute));
    }
}

TEST_F(GrpcLink, ReadsNoMoreTracksThanAPageHolds) {
    SimulatorOptions options;
    options.scripting.pageLimit = 200;
    start(options, 500);
    const auto tracks = clientOf(port)->trackList();
    ASSERT_TRUE(tracks) << errorOf(tracks);
    EXPECT_EQ(tracks->size(), 200u);
}

TEST_F(GrpcLink, SaysSoWhenNobodyListens) {
    start();
    stop();
    EXPECT_EQ(errorOf(clientOf(port)->trackList()), "Cannot reach Pro Tools' PTSL (not running or disabled)");
}

TEST_F(GrpcLink, RegistersAgainAfterARestartBetweenTwoCalls) {
    start();
    const auto client = clientOf(port);
    ASSERT_TRUE(client->trackList());
    for (int i = 0; i < 5; ++i) {
        restart();
        const auto tracks = client->trackList();
        ASSERT_TRUE(tracks) << errorOf(tracks);
        EXPECT_EQ(tracks->size(), 24u);
    }
}

TEST_F(GrpcLink, IsWellAgainAfterARestartDuringACall) {
    start();
    const auto client = clientOf(port);
    ASSERT_TRUE(client->trackList());
    const std::uint64_t before = proTools->scripting().arrivals();
    proTools->scripting().stall(seconds(3600));
    std::string error;
    std::jthread calling([&] { error = errorOf(client->trackList()); });
    ASSERT_TRUE(waitUntil([&] { return proTools->scripting().arrivals() > before; }));
    stop();
    calling.join();
    EXPECT_NE(error, "no error");
    proTools->rest();
    serve(port);
    EXPECT_EQ(errorOf(client->trackList()), "no error");
}

TEST_F(GrpcLink, TimesOutWhileTheServiceStallsAndIsWellAgain) {
    start();
    const auto client = clientOf(port);
    ASSERT_TRUE(client->trackList());
    proTools->scripting().stall(seconds(3600));
    const auto begin = Clock::now();
    EXPECT_EQ(errorOf(client->trackList()), "PTSL response timed out");
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(15));
    proTools->rest();
    EXPECT_EQ(errorOf(client->trackList()), "no error");
}

} // namespace
} // namespace lumbrine::interop
