// The scripting service as programs offer it: the official gRPC server behind a wire with faults, for the scripting
// link and for the official client.
#include "platform/virtual/memory_midi.h"
#include "simulator/default_session.h"
#include "simulator/simulated_pro_tools.h"
#include "tests/interop/link_rig.h"
#include "tests/interop/official_client.h"
#include "tests/interop/waiting.h"
#include "tools/offered_scripting.h"

namespace lumbrine::interop {
namespace {

class OfferedScriptingTest : public LinkTest {
protected:
    void start(const ScriptingOptions& scripting, int tracks = 24) {
        offered.reset();
        SimulatorOptions options;
        options.scripting = scripting;
        proTools = std::make_unique<SimulatedProTools>(runtime, midi, options, defaultSession(tracks, 1));
        offered = std::make_unique<OfferedScripting>(runtime, proTools->scripting(), std::uint16_t{0});
        ASSERT_TRUE(offered->port());
        link = clientOf(*offered->port());
    }

    std::string list() { return errorOf(link->trackList()); }
    WireFaults& faults() { return proTools->scripting().wireFaults(); }

    MemoryMIDI midi{runtime};
    std::unique_ptr<SimulatedProTools> proTools;
    std::unique_ptr<OfferedScripting> offered;
    std::unique_ptr<PTSLClient> link;
};

constexpr ScriptingOptions faulty{.downTime = std::chrono::milliseconds(500), .faultyWire = true};

TEST_F(OfferedScriptingTest, PrintsWhereItIs) {
    for (const ScriptingOptions& options : {ScriptingOptions{}, faulty}) {
        start(options);
        EXPECT_EQ(proTools->snapshot().scriptingPort, offered->port());
        EXPECT_EQ(faults().inUse(), options.faultyWire);
        std::make_unique<OfferedScripting>(runtime, proTools->scripting(), *offered->port());
        EXPECT_EQ(proTools->snapshot().scriptingPort, offered->port()); // the other one came too late
    }
}

TEST_F(OfferedScriptingTest, ServesThroughAWireWithoutFaultsAsWithoutIt) {
    start({});
    const auto plain = link->trackList();
    start(faulty);
    const auto relayed = link->trackList();
    ASSERT_TRUE(plain && relayed);
    EXPECT_EQ(*plain, *relayed);
    OfficialClient official(*offered->port());
    ASSERT_TRUE(official.registerOurselves());
    for (int i = 0; i < 20; ++i)
        EXPECT_TRUE(official.ask(OfficialClient::trackList).status.ok());
}

TEST_F(OfferedScriptingTest, LetsTheLinkTryAgainAfterOneReset) {
    start(faulty);
    ASSERT_EQ(list(), "no error");
    faults().next(WireFault::reset, 1);
    EXPECT_EQ(list(), "no error");
    faults().next(WireFault::reset, 2);
    EXPECT_EQ(list(), "PTSL transport error: stream was reset");
    EXPECT_EQ(list(), "no error");
}

TEST_F(OfferedScriptingTest, LetsTheLinkTryAgainAfterOneGoAway) {
    start(faulty);
    ASSERT_EQ(list(), "no error");
    faults().next(WireFault::goAway, 1);
    EXPECT_EQ(list(), "no error");
    faults().next(WireFault::goAway, 2);
    EXPECT_EQ(list(), "PTSL transport error: server sent GOAWAY");
    EXPECT_EQ(list(), "no error");
}

TEST_F(OfferedScriptingTest, ComesBackForTheLinkWhenItHasDied) {
    start(faulty);
    ASSERT_EQ(list(), "no error");
    faults().next(WireFault::die, 1);
    EXPECT_EQ(list(), "Cannot reach Pro Tools' PTSL (not running or disabled)");
    EXPECT_TRUE(waitUntil([&] { return list() == "no error"; }));
}

TEST_F(OfferedScriptingTest, AnswersTheLinkOneByteAtATime) {
    start({.bytesAtOnce = 1}, 200);
    const auto tracks = link->trackList();
    ASSERT_TRUE(tracks) << errorOf(tracks);
    EXPECT_EQ(tracks->size(), 200u);
}

// The official library may still give a call to the connection that is going down; that call is lost with it.
bool registersAgain(OfficialClient& official) {
    constexpr int attempts = 20;
    for (int attempt = 0; attempt < attempts; ++attempt)
        if (official.registerOurselves()) return true;
    return false;
}

TEST_F(OfferedScriptingTest, LosesCallsOfTheOfficialClientAndServesTheNext) {
    start(faulty);
    OfficialClient official(*offered->port());
    ASSERT_TRUE(official.registerOurselves());
    faults().next(WireFault::reset, 1);
    EXPECT_EQ(official.ask(OfficialClient::trackList).status.error_code(), grpc::StatusCode::INTERNAL);
    EXPECT_EQ(official.ask(OfficialClient::trackList).error(), 0); // on the same connection
    for (const WireFault fault : {WireFault::goAway, WireFault::die}) {
        faults().next(fault, 1);
        EXPECT_EQ(official.ask(OfficialClient::trackList).status.error_code(), grpc::StatusCode::UNAVAILABLE);
        ASSERT_TRUE(registersAgain(official));
        EXPECT_EQ(official.ask(OfficialClient::trackList).error(), 0);
    }
}

TEST_F(OfferedScriptingTest, GivesBackTheWindowOfResetCalls) {
    start(faulty, 1000);
    OfficialClient official(*offered->port());
    ASSERT_TRUE(official.registerOurselves());
    for (int i = 0; i < 50; ++i) { // 20 MB altogether
        faults().next(WireFault::reset, 1);
        EXPECT_FALSE(official.ask(OfficialClient::trackList).status.ok());
    }
    EXPECT_EQ(official.ask(OfficialClient::trackList).error(), 0);
}

TEST_F(OfferedScriptingTest, IsWellOnceAllFaultsAreOver) {
    start({.busyOneIn = 9,
           .resetOneIn = 5,
           .goAwayOneIn = 5,
           .dieOneIn = 15,
           .downTime = std::chrono::milliseconds(20),
           .bytesAtOnce = 100});
    int served = 0, lost = 0;
    EXPECT_TRUE(waitUntil([&] {
        ++(list() == "no error" ? served : lost);
        return served >= 20 && lost >= 20;
    }));
    proTools->rest();
    EXPECT_TRUE(waitUntil([&] { return list() == "no error"; }));
    EXPECT_EQ(list(), "no error");
}

} // namespace
} // namespace lumbrine::interop
