// The simulated Pro Tools' scripting service on the official gRPC library, driven by that library's own client.
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"
#include "platform/virtual/memory_midi.h"
#include "simulator/default_session.h"
#include "simulator/grpc/grpc_scripting_server.h"
#include "simulator/simulated_pro_tools.h"
#include "tests/interop/official_client.h"
#include "tests/interop/waiting.h"

#include <thread>

namespace lumbrine::interop {
namespace {

class GrpcServer : public testing::Test {
protected:
    void start(const SimulatorOptions& options, int tracks = 24) {
        proTools = std::make_unique<SimulatedProTools>(runtime, midi, options, defaultSession(tracks, 1));
        serve(0);
    }

    void serve(std::uint16_t wanted) {
        server.reset();
        server = std::make_unique<GrpcScriptingServer>(runtime, proTools->scripting(), wanted);
        ASSERT_TRUE(server->port());
        port = *server->port();
    }

    RunLoop loop;
    RealRuntime runtime{loop};
    MemoryMIDI midi{runtime};
    std::unique_ptr<SimulatedProTools> proTools;
    std::unique_ptr<GrpcScriptingServer> server;
    std::uint16_t port = 0;
};

TEST_F(GrpcServer, AnswersTheHostReadyCheckAndRegisters) {
    start({});
    OfficialClient client(port);
    const auto ready = client.ask(OfficialClient::hostReadyCheck);
    ASSERT_TRUE(ready.status.ok()) << ready.status.error_message();
    EXPECT_EQ(ready.response.response_body_json(), R"({"is_host_ready":true})");
    EXPECT_EQ(ready.response.header().task_id(), "task");
    EXPECT_EQ(ready.response.header().command(), 13);
    EXPECT_EQ(ready.response.header().status(), OfficialClient::completed);
    EXPECT_EQ(ready.response.header().progress(), 100);
    EXPECT_EQ(ready.response.header().version(), 5);
    EXPECT_TRUE(client.registerOurselves());
    EXPECT_FALSE(client.sessionID.empty());
}

TEST_F(GrpcServer, FailsACommandInItsReplyAndNotInTheCall) {
    start({});
    OfficialClient client(port);
    const auto result = client.ask(1);
    ASSERT_TRUE(result.status.ok());
    EXPECT_EQ(result.response.header().status(), OfficialClient::failed);
    EXPECT_EQ(result.error(), 133);
    EXPECT_EQ(result.response.response_body_json(), "");
}

TEST_F(GrpcServer, ListsAndSetsTheSessionThatTheSurfacesShow) {
    start({});
    OfficialClient client(port);
    ASSERT_TRUE(client.registerOurselves());
    const std::string name = client.ask(OfficialClient::trackList).body()["track_list"][15]["name"].get<std::string>();
    EXPECT_EQ(name, "ギターソロ");
    EXPECT_EQ(client.set(OfficialClient::setMute, name, true).response.header().status(), OfficialClient::completed);
    EXPECT_TRUE(proTools->session().findByName(name)->mute);
    proTools->edit([&](SimulatedSession& session) {
        session.change(session.findByName(name)->id, [](SimulatedTrack& track) { track.mute = false; });
    });
    const auto list = client.ask(OfficialClient::trackList);
    EXPECT_EQ(list.body()["track_list"][15]["track_attributes"]["is_muted"], false);
    EXPECT_EQ(client.set(OfficialClient::setSolo, "Nobody", true).error(), 107);
}

TEST_F(GrpcServer, AnswersAStreamWithOneMessage) {
    start({});
    OfficialClient client(port);
    ASSERT_TRUE(client.registerOurselves());
    const auto list = client.askForStream(OfficialClient::trackList);
    ASSERT_TRUE(list.status.ok()) << list.status.error_message();
    EXPECT_EQ(list.response.SerializeAsString(), client.ask(OfficialClient::trackList).response.SerializeAsString());
}

TEST_F(GrpcServer, ListsSessionsOfHundredsOfTracks) {
    for (const int tracks : {0, 500, 1000}) {
        server.reset();
        start({}, tracks);
        OfficialClient client(port);
        ASSERT_TRUE(client.registerOurselves());
        const auto list = client.ask(OfficialClient::trackList);
        EXPECT_EQ(list.body()["track_list"].size(), static_cast<std::size_t>(tracks));
        EXPECT_EQ(list.body()["pagination_response"]["total"], tracks);
    }
}

TEST_F(GrpcServer, TellsTwoConnectionsApart) {
    start({});
    OfficialClient first(port), second(port);
    ASSERT_TRUE(first.registerOurselves());
    second.sessionID = first.sessionID;
    EXPECT_EQ(second.ask(OfficialClient::trackList).error(), 403);
    EXPECT_EQ(first.ask(OfficialClient::trackList).error(), 0);
}

TEST_F(GrpcServer, ServesManyThreadsAtOnce) {
    start({});
    OfficialClient client(port);
    ASSERT_TRUE(client.registerOurselves());
    std::atomic<int> served = 0;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 8; ++thread)
            threads.emplace_back([&, thread] {
                const int command = thread % 2 == 0 ? OfficialClient::trackList : OfficialClient::hostReadyCheck;
                for (int i = 0; i < 25; ++i)
                    served += client.ask(command).response.header().status() == OfficialClient::completed ? 1 : 0;
            });
    }
    EXPECT_EQ(served, 200);
}

TEST_F(GrpcServer, LeavesATakenPortAlone) {
    start({});
    GrpcScriptingServer late(runtime, proTools->scripting(), port);
    EXPECT_EQ(late.port(), std::nullopt);
    OfficialClient client(port);
    EXPECT_TRUE(client.ask(OfficialClient::hostReadyCheck).status.ok());
}

TEST_F(GrpcServer, LetsACallWaitWhileItStallsAndLosesIt) {
    start({});
    OfficialClient client(port);
    ASSERT_TRUE(client.registerOurselves());
    proTools->scripting().stall(seconds(3600));
    const auto result = client.ask(OfficialClient::trackList, "", std::chrono::milliseconds(300));
    EXPECT_EQ(result.status.error_code(), grpc::StatusCode::DEADLINE_EXCEEDED);
}

TEST_F(GrpcServer, EndsTheCallsThatWaitWhenItEnds) {
    start({});
    OfficialClient client(port);
    ASSERT_TRUE(client.registerOurselves());
    proTools->scripting().stall(seconds(3600));
    const std::uint64_t before = proTools->scripting().arrivals();
    std::vector<OfficialClient::Result> results(2);
    std::jthread unary([&] { results[0] = client.ask(OfficialClient::trackList); });
    std::jthread stream([&] { results[1] = client.askForStream(OfficialClient::trackList); });
    ASSERT_TRUE(waitUntil([&] { return proTools->scripting().arrivals() == before + 2; }));
    server.reset();
    unary.join();
    stream.join();
    for (const auto& result : results)
        EXPECT_EQ(result.status.error_code(), grpc::StatusCode::UNAVAILABLE);
}

TEST_F(GrpcServer, KnowsNoSessionAfterARestart) {
    start({});
    OfficialClient client(port);
    ASSERT_TRUE(client.registerOurselves());
    const std::string before = client.sessionID;
    proTools->scripting().restart();
    serve(port);
    EXPECT_EQ(client.askAfterRestart(OfficialClient::trackList).error(), 403);
    ASSERT_TRUE(client.registerOurselves());
    EXPECT_NE(client.sessionID, before);
    EXPECT_EQ(client.ask(OfficialClient::trackList).error(), 0);
}

} // namespace
} // namespace lumbrine::interop
