// The scripting service and the surfaces show one session.
#include "platform/virtual/memory_midi.h"
#include "platform/virtual/virtual_runtime.h"
#include "simulator/scripting_json.h"
#include "simulator/simulated_pro_tools.h"
#include "simulator/testing/host_bench.h"

namespace lumbrine {
namespace {

constexpr int trackListCommand = 3, hostReadyCommand = 13, registrationCommand = 70;

class SimulatedScriptingTest : public testing::Test {
protected:
    void start(const SimulatorOptions& options) {
        proTools = std::make_unique<SimulatedProTools>(runtime, midi, options, numberedSession(12));
        runtime.runFor(seconds(0.1));
    }

    // The reply arrives in `replies` in time.
    void post(int command, std::string body = "") {
        ScriptingRequest request;
        request.command = command;
        request.sessionID = id;
        request.bodyJSON = std::move(body);
        proTools->scripting().ask(std::move(request), "test", [this](ScriptingReply reply) {
            replies.push_back(std::move(reply));
            answeredAt.push_back(runtime.now());
        });
    }

    ScriptingReply ask(int command, std::string body = "") {
        post(command, std::move(body));
        EXPECT_TRUE(runtime.runUntil([this] { return !replies.empty(); }, seconds(60)));
        return std::exchange(replies, {}).front();
    }

    void registerOurselves() {
        const ScriptingReply reply = ask(registrationCommand, R"({"company_name":"T","application_name":"L"})");
        id = ScriptingJSON::parse(reply.bodyJSON)["session_id"].get<std::string>();
    }

    ScriptingJSON attributes(std::size_t index) {
        return ScriptingJSON::parse(ask(trackListCommand).bodyJSON)["track_list"][index]["track_attributes"];
    }

    void set(int command, const std::string& name, bool enabled) {
        const ScriptingJSON body{{"track_names", ScriptingJSON::array({name})}, {"enabled", enabled}};
        EXPECT_EQ(ask(command, body.dump()).status, ScriptingStatus::completed);
        runtime.runFor(seconds(0.1));
    }

    void press(int strip, int port) {
        const auto zone = static_cast<std::uint8_t>(strip);
        midi.received(source, Bytes{0xB0, 0x0F, zone, 0xB0, 0x2F, static_cast<std::uint8_t>(0x40 | port)});
        midi.received(source, Bytes{0xB0, 0x0F, zone, 0xB0, 0x2F, static_cast<std::uint8_t>(port)});
        runtime.runFor(seconds(0.1));
    }

    bool lit(std::size_t strip, int port) {
        return (proTools->snapshot().surfaces[0].strips[strip].leds >> port & 1) != 0;
    }

    void makePorts() {
        MIDIClientRef client = 0;
        MIDIEndpointRef destination = 0;
        midi.createClient("Lumbrine", client);
        midi.createSource(client, "Lumbrine", source);
        midi.createDestination(client, "Lumbrine", [](ByteView) {}, destination);
    }

    VirtualRuntime runtime;
    MemoryMIDI midi{runtime};
    MIDIEndpointRef source = 0;
    std::unique_ptr<SimulatedProTools> proTools;
    std::string id;
    std::vector<ScriptingReply> replies;
    std::vector<TimePoint> answeredAt;
};

TEST_F(SimulatedScriptingTest, LightsOnTheSurfacesWhatItSets) {
    makePorts();
    start({});
    registerOurselves();
    const std::map<int, int> portOfCommand{{85, 2}, {86, 3}, {88, 7}};
    for (const auto& [command, port] : portOfCommand) {
        set(command, "T03", true);
        EXPECT_TRUE(lit(2, port)) << command;
        EXPECT_FALSE(lit(1, port)) << command;
        set(command, "T03", false);
        EXPECT_FALSE(lit(2, port)) << command;
    }
}

TEST_F(SimulatedScriptingTest, LogsWhatIsPressedOnTheSurfaces) {
    makePorts();
    start({});
    registerOurselves();
    const std::map<int, std::string> keyOfPort{{2, "is_muted"}, {3, "is_soloed"}, {7, "is_record_enabled"}};
    for (const auto& [port, key] : keyOfPort) {
        press(4, port);
        EXPECT_EQ(attributes(4)[key], true) << key;
        EXPECT_EQ(attributes(3)[key], false) << key;
        press(4, port);
        EXPECT_EQ(attributes(4)[key], false) << key;
    }
    press(4, 1);
    EXPECT_EQ(attributes(4)["is_selected"], "SetExplicitly");
    EXPECT_EQ(attributes(3)["is_selected"], "None");
}

TEST_F(SimulatedScriptingTest, LogsWhatIsDoneOnTheScreen) {
    start({});
    registerOurselves();
    proTools->edit([](SimulatedSession& session) {
        session.rename(2, "ボーカル");
        session.setHidden(2, true);
        session.change(2, [](SimulatedTrack& track) {
            track.color = "#ff00ff00";
            track.inputMonitor = true;
        });
        session.move(2, 0);
    });
    const ScriptingJSON track = ScriptingJSON::parse(ask(trackListCommand).bodyJSON)["track_list"][0];
    EXPECT_EQ(track["name"], "ボーカル");
    EXPECT_EQ(track["color"], "#ff00ff00");
    EXPECT_EQ(track["track_attributes"]["is_hidden"], "SetExplicitly");
    EXPECT_EQ(track["track_attributes"]["is_input_monitoring_on"], "SetExplicitly");
}

TEST_F(SimulatedScriptingTest, LeavesTheMembersOfAClosedFolderOutOfTheBank) {
    makePorts();
    start({});
    registerOurselves();
    proTools->edit([](SimulatedSession& session) {
        session.change(1, [](SimulatedTrack& track) { track.isFolder = track.closed = true; });
        session.change(2, [](SimulatedTrack& track) { track.folder = 1; });
    });
    runtime.runFor(seconds(0.1));
    EXPECT_EQ(proTools->snapshot().surfaces[0].strips[1].trackID, 3);
    EXPECT_EQ(proTools->snapshot().shownTracks, 11);
    EXPECT_EQ(attributes(1)["is_hidden"], "SetImplicitly");
}

TEST_F(SimulatedScriptingTest, BeginsWithoutASessionWhereThatIsChosen) {
    SimulatorOptions options;
    options.opensSession = false;
    start(options);
    registerOurselves();
    EXPECT_FALSE(proTools->snapshot().sessionOpen);
    EXPECT_EQ(ask(trackListCommand).status, ScriptingStatus::failed);
    proTools->edit([](SimulatedSession& session) { session.open(); });
    EXPECT_EQ(ask(trackListCommand).status, ScriptingStatus::completed);
}

TEST_F(SimulatedScriptingTest, TakesTheTimeThatACommandTakes) {
    SimulatorOptions options;
    options.scripting.commandTime = seconds(0.25);
    start(options);
    const TimePoint begin = runtime.now();
    ask(hostReadyCommand);
    EXPECT_EQ(answeredAt.front() - begin, seconds(0.25));
}

TEST_F(SimulatedScriptingTest, ServesRequestsInTheirOrder) {
    start({});
    for (const int command : {13, 70, 2})
        post(command);
    runtime.runUntilIdle();
    ASSERT_EQ(replies.size(), 3u);
    EXPECT_EQ(replies[0].command, 13);
    EXPECT_EQ(replies[1].command, 70);
    EXPECT_EQ(replies[2].command, 2);
    EXPECT_EQ(proTools->scripting().arrivals(), 3u);
    EXPECT_EQ(proTools->scripting().answers(), 3u);
}

TEST_F(SimulatedScriptingTest, ServesWhatCameDuringAStallAfterwards) {
    start({});
    registerOurselves();
    const TimePoint begin = runtime.now();
    proTools->scripting().stall(seconds(5));
    post(85, R"({"track_names":["T01"],"enabled":true})");
    post(hostReadyCommand);
    runtime.runFor(seconds(4.999));
    EXPECT_TRUE(replies.empty());
    EXPECT_EQ(proTools->scripting().arrivals(), 3u);
    EXPECT_EQ(proTools->scripting().answers(), 1u);
    EXPECT_FALSE(proTools->session().find(1)->mute);
    runtime.runFor(seconds(0.001));
    ASSERT_EQ(replies.size(), 2u);
    EXPECT_EQ(replies[0].command, 85);
    EXPECT_EQ(answeredAt.back() - begin, seconds(5));
    EXPECT_TRUE(proTools->session().find(1)->mute);
}

TEST_F(SimulatedScriptingTest, StandsStillWithTheWholeProgram) {
    start({});
    proTools->stick(seconds(3));
    post(hostReadyCommand);
    runtime.runFor(seconds(2.999));
    EXPECT_TRUE(replies.empty());
    runtime.runFor(seconds(0.001));
    EXPECT_EQ(replies.size(), 1u);
}

TEST_F(SimulatedScriptingTest, ServesSomeRequestsLateWhereThatIsChosen) {
    SimulatorOptions options;
    options.scripting.stallOneIn = 4;
    options.scripting.stallTime = seconds(7);
    start(options);
    for (int i = 0; i < 100; ++i)
        post(hostReadyCommand);
    runtime.runUntilIdle();
    const std::size_t atOnce = replies.size();
    EXPECT_GT(atOnce, 50u);
    EXPECT_LT(atOnce, 95u);
    runtime.runFor(seconds(6.999));
    EXPECT_EQ(replies.size(), atOnce);
    runtime.runFor(seconds(0.001));
    EXPECT_EQ(replies.size(), 100u);
}

TEST_F(SimulatedScriptingTest, ServesEverythingAtOnceWhenAllTroubleIsOver) {
    SimulatorOptions options;
    options.scripting.busyOneIn = 1;
    options.scripting.stallOneIn = 1;
    start(options);
    proTools->rest();
    proTools->scripting().stall(seconds(60));
    proTools->stick(seconds(60));
    post(hostReadyCommand);
    runtime.runFor(seconds(1));
    EXPECT_TRUE(replies.empty());
    proTools->rest();
    runtime.runUntilIdle();
    ASSERT_EQ(replies.size(), 1u);
    EXPECT_EQ(replies.front().bodyJSON, R"({"is_host_ready":true})");
}

TEST_F(SimulatedScriptingTest, ForgetsRegistrationsWhenItIsRestarted) {
    start({});
    registerOurselves();
    proTools->scripting().restart();
    EXPECT_EQ(ask(trackListCommand).status, ScriptingStatus::failed);
    registerOurselves();
    EXPECT_EQ(ask(trackListCommand).status, ScriptingStatus::completed);
}

TEST_F(SimulatedScriptingTest, DropsWhatItHasNotAnsweredWhenItEnds) {
    start({});
    proTools->scripting().stall(seconds(60));
    auto kept = std::make_shared<int>(0);
    ScriptingRequest request;
    request.command = hostReadyCommand;
    proTools->scripting().ask(request, "test", [kept](const ScriptingReply&) { ++*kept; });
    runtime.runFor(seconds(1));
    EXPECT_EQ(kept.use_count(), 2);
    proTools.reset();
    EXPECT_EQ(kept.use_count(), 1);
    EXPECT_EQ(*kept, 0);
}

TEST_F(SimulatedScriptingTest, LogsWhereItIsOffered) {
    start({});
    EXPECT_EQ(proTools->snapshot().scriptingPort, std::nullopt);
    proTools->scripting().offeredOn(31416);
    EXPECT_EQ(proTools->snapshot().scriptingPort, 31416);
    proTools->scripting().offeredOn(std::nullopt);
    EXPECT_EQ(proTools->snapshot().scriptingPort, std::nullopt);
}

// ---- Dialogs, and sessions that are opened or saved

const std::string muteTheFirst = R"({"track_names":["T01"],"enabled":true})";
constexpr int setMuteCommand = 85;

SimulatorOptions withDialogAnswer(DialogAnswer answer) {
    SimulatorOptions options;
    options.scripting.inDialog = answer;
    return options;
}

TEST_F(SimulatedScriptingTest, FailsEveryCommandWhileADialogIsOpen) {
    start({});
    registerOurselves();
    proTools->openDialog("Save changes?");
    for (const int command : {trackListCommand, hostReadyCommand, setMuteCommand}) {
        const ScriptingReply reply = ask(command, command == setMuteCommand ? muteTheFirst : "");
        EXPECT_EQ(reply.status, ScriptingStatus::failed);
        EXPECT_THAT(reply.errorJSON, testing::HasSubstr("106"));
    }
    proTools->closeDialog();
    EXPECT_EQ(ask(trackListCommand).status, ScriptingStatus::completed);
    EXPECT_FALSE(proTools->session().tracks()[0].mute);
}

TEST_F(SimulatedScriptingTest, CarriesOutRefusedCommandsOnceTheDialogIsClosedWhereThatIsChosen) {
    start(withDialogAnswer(DialogAnswer::deferral));
    registerOurselves();
    proTools->openDialog("Save changes?");
    EXPECT_EQ(ask(setMuteCommand, muteTheFirst).status, ScriptingStatus::failed);
    runtime.runFor(seconds(5));
    EXPECT_FALSE(proTools->session().tracks()[0].mute);
    proTools->closeDialog();
    runtime.runFor(seconds(0.1));
    EXPECT_TRUE(proTools->session().tracks()[0].mute);
}

TEST_F(SimulatedScriptingTest, IsSilentUntilTheDialogIsClosedWhereThatIsChosen) {
    start(withDialogAnswer(DialogAnswer::silence));
    registerOurselves();
    proTools->openDialog("Save changes?");
    post(trackListCommand);
    runtime.runFor(seconds(30));
    EXPECT_TRUE(replies.empty());
    proTools->closeDialog();
    runtime.runFor(seconds(0.1));
    ASSERT_EQ(replies.size(), 1u);
    EXPECT_EQ(replies[0].status, ScriptingStatus::completed);
}

TEST_F(SimulatedScriptingTest, AnswersWithStatusTwoAndNoBodyWhileASessionIsOpenedOrSaved) {
    SimulatorOptions options;
    options.scripting.answersInProgress = true;
    start(options);
    registerOurselves();
    proTools->saveSession(seconds(1));
    const ScriptingReply saving = ask(trackListCommand);
    EXPECT_EQ(saving.status, ScriptingStatus::inProgress);
    EXPECT_EQ(saving.bodyJSON, "");
    runtime.runFor(seconds(1));
    EXPECT_EQ(ask(trackListCommand).status, ScriptingStatus::completed);

    proTools->exchangeSession(numberedSession(3));
    EXPECT_EQ(ask(trackListCommand).status, ScriptingStatus::inProgress);
    runtime.runFor(options.sessionOpensAfter);
    EXPECT_EQ(ScriptingJSON::parse(ask(trackListCommand).bodyJSON)["track_list"].size(), 3u);
}

TEST_F(SimulatedScriptingTest, HasNoSessionWhileAnotherIsOpenedUnlessStatusTwoIsChosen) {
    start({});
    registerOurselves();
    proTools->exchangeSession(numberedSession(3));
    EXPECT_THAT(ask(trackListCommand).errorJSON, testing::HasSubstr("106"));
}

} // namespace
} // namespace lumbrine
