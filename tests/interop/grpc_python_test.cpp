// The scripting link against a server on the Python gRPC package.
#include "tests/interop/child_process.h"
#include "tests/interop/link_rig.h"
#include "tests/interop/local_server.h"
#include "tests/interop/waiting.h"

#include <csignal>
#include <thread>

namespace lumbrine::interop {
namespace {

using namespace std::chrono_literals;

class PythonService : public LinkTest {
protected:
    // Returns when it listens.
    void start(std::vector<std::string> options = {}) {
        std::vector<std::string> command{"/usr/bin/python3", LUMBRINE_SOURCE_DIR "/tests/interop/scripting_service.py",
                                         "--port", std::to_string(port)};
        command.insert(command.end(), options.begin(), options.end());
        service = std::make_unique<ChildProcess>(command);
        ASSERT_TRUE(waitUntil([&] { return service->output().find("listening") != std::string::npos; }))
            << service->output();
    }

    void kill() {
        service->signal(SIGKILL);
        service->wait(patience);
    }

    const std::uint16_t port = freeStreamPort();
    std::unique_ptr<ChildProcess> service;
};

TEST_F(PythonService, ListsAndSetsTracks) {
    start({"--tracks", "3"});
    const auto client = clientOf(port);
    const auto before = client->trackList();
    ASSERT_TRUE(before) << errorOf(before);
    EXPECT_EQ(*before, (std::vector<PTSLTrack>{{.index = 1, .name = "トラック 1", .color = 0x336699, .id = "{1}"},
                                               {.index = 2, .name = "トラック 2", .color = 0x336699, .id = "{2}"},
                                               {.index = 3, .name = "トラック 3", .color = 0x336699, .id = "{3}"}}));
    EXPECT_EQ(errorOf(client->setMute({"トラック 1", "トラック 2"}, true)), "no error");
    EXPECT_EQ(errorOf(client->setSolo({"トラック 2"}, true)), "no error");
    EXPECT_EQ(errorOf(client->setInputMonitor("トラック 3", true)), "no error");
    EXPECT_EQ(errorOf(client->setMute({"トラック 1"}, false)), "no error");
    const auto after = client->trackList();
    ASSERT_TRUE(after) << errorOf(after);
    EXPECT_EQ(*after,
              (std::vector<PTSLTrack>{
                  {.index = 1, .name = "トラック 1", .color = 0x336699, .id = "{1}"},
                  {.index = 2, .name = "トラック 2", .color = 0x336699, .isMuted = true, .isSoloed = true, .id = "{2}"},
                  {.index = 3, .name = "トラック 3", .color = 0x336699, .isInputMonitoringOn = true, .id = "{3}"}}));
}

TEST_F(PythonService, ListsAndMutesAThousandTracks) {
    start({"--tracks", "1000"});
    const auto client = clientOf(port);
    const auto tracks = client->trackList();
    ASSERT_TRUE(tracks) << errorOf(tracks);
    ASSERT_EQ(tracks->size(), 1000u);
    EXPECT_EQ(tracks->back().name, "トラック 1000");
    std::vector<std::string> names;
    for (const PTSLTrack& track : *tracks)
        names.push_back(track.name);
    EXPECT_EQ(errorOf(client->setMute(names, true)), "no error");
    const auto muted = client->trackList();
    ASSERT_TRUE(muted) << errorOf(muted);
    EXPECT_TRUE(std::ranges::all_of(*muted, &PTSLTrack::isMuted));
}

TEST_F(PythonService, KeepsOneConnectionForManyCommands) {
    start({"--tracks", "500"});
    const auto client = clientOf(port);
    ASSERT_TRUE(client->trackList());
    const auto descriptors = openDescriptors();
    for (int i = 0; i < 100; ++i) {
        const auto tracks = client->trackList();
        ASSERT_TRUE(tracks) << errorOf(tracks);
        ASSERT_EQ(tracks->size(), 500u);
    }
    EXPECT_EQ(openDescriptors(), descriptors);
}

TEST_F(PythonService, IsNotThereAndThenIs) {
    const auto client = clientOf(port);
    EXPECT_EQ(errorOf(client->trackList()), "Cannot reach Pro Tools' PTSL (not running or disabled)");
    start();
    EXPECT_EQ(errorOf(client->trackList()), "no error");
}

TEST_F(PythonService, IsFoundAgainAfterARestart) {
    start();
    const auto client = clientOf(port);
    ASSERT_TRUE(client->trackList());
    kill();
    start();
    EXPECT_EQ(errorOf(client->trackList()), "no error"); // the old connection fails, the old session is refused
    EXPECT_EQ(errorOf(client->setMute({"トラック 1"}, true)), "no error");
}

TEST_F(PythonService, IsFoundAgainAfterItDiedDuringACommand) {
    start({"--stall"});
    const auto client = clientOf(port);
    std::thread killer([this] {
        waitUntil([&] { return service->output().find("command 3") != std::string::npos; });
        kill();
    });
    const auto begin = Clock::now();
    EXPECT_FALSE(client->trackList()); // the second attempt may be let in by a socket that is about to go
    EXPECT_LT(Clock::now() - begin, 3s);
    killer.join();
    start();
    EXPECT_EQ(errorOf(client->trackList()), "no error");
}

TEST_F(PythonService, RefusesASessionOfAnotherProcessInItsOwnWords) {
    start();
    const auto client = clientOf(port);
    ASSERT_TRUE(client->trackList());
    kill();
    start();
    EXPECT_FALSE(client->setMute({"トラック 1"}, true)); // the connection is gone
    EXPECT_EQ(errorOf(client->setMute({"トラック 1"}, true)),
              "PTSL command failed: {\"errors\":[{\"command_error_message\":\"unknown session\"}]}");
}

TEST_F(PythonService, MayNotKnowTheMethod) {
    start({"--unknown"});
    EXPECT_EQ(errorOf(clientOf(port)->trackList()),
              "PTSL transport error: stream closed without a response body (gRPC error)");
}

TEST_F(PythonService, IsGivenUpWhenItStalls) {
    start({"--stall"});
    EXPECT_EQ(errorOf(wireTo(port, 0.2)->call(path, Bytes{0x0A, 0x04, 0x10, 0x03, 0x18, 0x05})),
              "PTSL response timed out");
}

// The prefix of five bytes counts towards the window.
TEST_F(PythonService, SendsResponsesUpToTheStreamsWindow) {
    for (const std::size_t size : {std::size_t{65'536}, std::size_t{1'048'576}, http2::windowSize - std::size_t{5}}) {
        start({"--message", std::to_string(size)});
        const auto wire = wireTo(port, inSeconds(patience));
        for (int call = 0; call < 3; ++call) {
            const auto message = wire->call(path, Bytes{});
            ASSERT_TRUE(message) << errorOf(message);
            EXPECT_EQ(message->size(), size);
            EXPECT_EQ(message->back(), (size - 1) % 251);
        }
    }
}

TEST_F(PythonService, HoldsAResponseBackThatIsLargerThanTheStreamsWindow) {
    start({"--message", std::to_string(http2::windowSize - 4)});
    const auto begin = Clock::now();
    EXPECT_EQ(errorOf(wireTo(port, 1.5)->call(path, Bytes{})), "PTSL response timed out");
    EXPECT_LT(Clock::now() - begin, 5s);
}

} // namespace
} // namespace lumbrine::interop
