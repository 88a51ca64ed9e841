#include "simulator/scripting_json.h"
#include "simulator/scripting_service.h"

namespace lumbrine {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr int trackList = 3, hostReadyCheck = 13, sessionName = 42, registration = 70;
constexpr int setMute = 85, setSolo = 86, setRecordEnable = 88, setInputMonitor = 90;

const std::string whoWeAre = R"({"company_name":"Tarnwick","application_name":"Lumbrine"})";

SimulatedSession threeTracks() {
    std::vector<SimulatedTrack> tracks(3);
    tracks[0].name = "Kick";
    tracks[1].name = "ボーカル";
    tracks[2].name = "Vox";
    return SimulatedSession("Evening Light", tracks);
}

class ScriptingServiceTest : public testing::Test {
protected:
    explicit ScriptingServiceTest(ScriptingOptions chosen = {}) { start(chosen); }

    void start(const ScriptingOptions& options) {
        service.emplace(
            options, 1, [this](const std::function<void(SimulatedSession&)>& body) { body(session); }, now,
            [this](std::int32_t command, bool enabled, int track) { switched.emplace_back(command, enabled, track); });
    }

    ScriptingReply ask(int command, std::string body = "", std::string sessionID = "") {
        ScriptingRequest request;
        request.command = command;
        request.bodyJSON = std::move(body);
        request.sessionID = std::move(sessionID);
        return service->answer(request, connection, now);
    }

    // Sends a command as a registered application.
    ScriptingReply tell(int command, std::string body = "") { return ask(command, std::move(body), registered()); }

    std::string registered() {
        if (id.empty())
            id = ScriptingJSON::parse(ask(registration, whoWeAre).bodyJSON)["session_id"].get<std::string>();
        return id;
    }

    static std::string names(const std::string& list, bool enabled) {
        return R"({"track_names":[)" + list + R"(],"enabled":)" + (enabled ? "true}" : "false}");
    }

    // The number of the error in a reply; 0 for none.
    static int errorOf(const ScriptingReply& reply) {
        if (reply.status != ScriptingStatus::failed) return 0;
        EXPECT_EQ(reply.bodyJSON, "");
        return ScriptingJSON::parse(reply.errorJSON)["errors"][0]["command_error_type"].get<int>();
    }

    SimulatedSession session = threeTracks();
    std::string connection = "first";
    TimePoint now{};
    std::vector<std::tuple<std::int32_t, bool, int>> switched;
    std::optional<ScriptingService> service;
    std::string id;
};

TEST_F(ScriptingServiceTest, AnswersTheHostReadyCheckToAnybody) {
    const ScriptingReply reply = ask(hostReadyCheck);
    EXPECT_EQ(reply.status, ScriptingStatus::completed);
    EXPECT_EQ(reply.bodyJSON, R"({"is_host_ready":true})");
    EXPECT_EQ(reply.errorJSON, "");
}

TEST_F(ScriptingServiceTest, RepeatsTaskAndCommandInTheHeaderOfItsReply) {
    ScriptingRequest request;
    request.taskID = "task 9";
    request.command = hostReadyCheck;
    const ScriptingReply reply = service->answer(request, connection, now);
    EXPECT_EQ(reply.taskID, "task 9");
    EXPECT_EQ(reply.command, hostReadyCheck);
    EXPECT_EQ(reply.progress, 100);
    EXPECT_EQ(reply.version, 5);
}

TEST_F(ScriptingServiceTest, GivesEachApplicationASessionIdentifierThatOpensTheOtherCommands) {
    const std::string first = registered();
    id.clear();
    const std::string second = registered();
    EXPECT_NE(first, second);
    EXPECT_EQ(ask(sessionName, "", first).bodyJSON, R"({"session_name":"Evening Light"})");
    EXPECT_EQ(ask(sessionName, "", second).status, ScriptingStatus::completed);
}

TEST_F(ScriptingServiceTest, RegistersNobodyWithoutAName) {
    for (const char* const body :
         {"", "{}", "x", R"({"company_name":"Tarnwick"})", R"({"company_name":"","application_name":"a"})",
          R"({"company_name":"a","application_name":1})"})
        EXPECT_EQ(errorOf(ask(registration, body)), 126) << body;
}

TEST_F(ScriptingServiceTest, KnowsNoSessionIdentifierThatItDidNotGive) {
    for (const char* const unknown : {"", "wrong", "0"}) {
        const ScriptingReply reply = ask(trackList, "", unknown);
        EXPECT_EQ(errorOf(reply), 403) << unknown;
        EXPECT_THAT(reply.errorJSON, HasSubstr("is not known"));
    }
    EXPECT_EQ(errorOf(ask(setMute, names("\"Kick\"", true), "wrong")), 403);
    EXPECT_FALSE(session.find(1)->mute);
}

TEST_F(ScriptingServiceTest, KnowsARegistrationOnItsOwnConnectionAlone) {
    const std::string identifier = registered();
    connection = "second";
    EXPECT_EQ(errorOf(ask(sessionName, "", identifier)), 403);
    connection = "first";
    EXPECT_EQ(errorOf(ask(sessionName, "", identifier)), 0);
}

TEST_F(ScriptingServiceTest, KeepsRegistrationsWhereThatIsChosen) {
    ScriptingOptions options;
    options.registrationOutlivesConnection = true;
    start(options);
    const std::string identifier = registered();
    connection = "second";
    EXPECT_EQ(errorOf(ask(sessionName, "", identifier)), 0);
}

TEST_F(ScriptingServiceTest, ForgetsAllRegistrationsWhenItIsStartedAgain) {
    const std::string before = registered();
    service->restart(now);
    EXPECT_EQ(errorOf(ask(trackList, "", before)), 403);
    id.clear();
    EXPECT_NE(registered(), before);
    EXPECT_EQ(errorOf(tell(trackList)), 0);
}

TEST_F(ScriptingServiceTest, ListsTheTracks) {
    const ScriptingJSON body =
        ScriptingJSON::parse(tell(trackList, R"({"pagination_request":{"limit":2,"offset":1}})").bodyJSON);
    EXPECT_EQ(body["track_list"].size(), 2u);
    EXPECT_EQ(body["track_list"][0]["name"], "ボーカル");
    EXPECT_EQ(errorOf(tell(trackList, R"({"page_limit":-1})")), 126);
}

TEST_F(ScriptingServiceTest, SetsMuteSoloRecordEnableAndInputMonitoringOnTheNamedTracks) {
    const std::map<int, bool SimulatedTrack::*> flags{{setMute, &SimulatedTrack::mute},
                                                      {setSolo, &SimulatedTrack::solo},
                                                      {setRecordEnable, &SimulatedTrack::recordArmed},
                                                      {setInputMonitor, &SimulatedTrack::inputMonitor}};
    for (const auto& [command, flag] : flags) {
        const ScriptingReply reply = tell(command, names(R"("Kick","ボーカル")", true));
        EXPECT_EQ(reply.status, ScriptingStatus::completed) << command;
        EXPECT_EQ(reply.bodyJSON, "{}");
        EXPECT_TRUE(session.find(1)->*flag && session.find(2)->*flag && !(session.find(3)->*flag)) << command;
        EXPECT_EQ(errorOf(tell(command, names(R"("Kick")", false))), 0);
        EXPECT_TRUE(!(session.find(1)->*flag) && session.find(2)->*flag) << command;
        session.change(2, [&](SimulatedTrack& track) { track.*flag = false; });
        EXPECT_EQ(session.tracks(), threeTracks().tracks()) << command; // and nothing else
    }
}

TEST_F(ScriptingServiceTest, SetsNothingWhenOneOfTheNamesIsUnknown) {
    for (const char* const list : {R"("Kick","Nobody")", R"("kick")", R"("Kick ")", R"("")"}) {
        const ScriptingReply reply = tell(setMute, names(list, true));
        EXPECT_EQ(errorOf(reply), 107) << list;
    }
    EXPECT_THAT(tell(setMute, names(R"("Kick","Nobody","Nowhere")", true)).errorJSON,
                HasSubstr(R"(There is no track \"Nobody\")"));
    EXPECT_EQ(session.tracks(), threeTracks().tracks());
}

TEST_F(ScriptingServiceTest, SetsHiddenTracksToo) {
    session.setHidden(1, true);
    EXPECT_EQ(errorOf(tell(setMute, names(R"("Kick")", true))), 0);
    EXPECT_TRUE(session.find(1)->mute);
}

TEST_F(ScriptingServiceTest, RefusesASetterOfAnotherForm) {
    for (const char* const body :
         {"", "[]", R"({"track_names":["Kick"]})", R"({"enabled":true})", R"({"track_names":"Kick","enabled":true})",
          R"({"track_names":[1],"enabled":true})", R"({"track_names":["Kick"],"enabled":1})"})
        EXPECT_EQ(errorOf(tell(setMute, body)), 126) << body;
    EXPECT_EQ(errorOf(tell(setMute, names("", true))), 0); // nobody is a list too
}

TEST_F(ScriptingServiceTest, SupportsNoOtherCommand) {
    for (const int command : {0, 1, 2, 4, 71, 84, 87, 89, 91, 133, -1})
        EXPECT_EQ(errorOf(tell(command)), 133) << command;
    EXPECT_EQ(errorOf(ask(2)), 133); // also without a registered session
}

TEST_F(ScriptingServiceTest, HasNothingToSayWithoutAnOpenSession) {
    registered();
    session.close();
    EXPECT_EQ(errorOf(tell(trackList)), 106);
    EXPECT_EQ(errorOf(tell(sessionName)), 106);
    for (const int command : {setMute, setSolo, setRecordEnable, setInputMonitor})
        EXPECT_EQ(errorOf(tell(command, names(R"("Kick")", true))), 106) << command;
    EXPECT_EQ(session.tracks(), threeTracks().tracks());
    EXPECT_EQ(errorOf(ask(hostReadyCheck)), 0);
    id.clear();
    registered();
    session.open();
    EXPECT_EQ(errorOf(tell(trackList)), 0);
}

TEST_F(ScriptingServiceTest, IsNotReadyForAWhileWhereThatIsChosenAndAgainAfterARestart) {
    ScriptingOptions options;
    options.readyAfter = seconds(2);
    start(options);
    const auto expectNotReady = [&] {
        EXPECT_EQ(ask(hostReadyCheck).bodyJSON, R"({"is_host_ready":false})");
        EXPECT_EQ(errorOf(ask(registration, whoWeAre)), 134);
        EXPECT_EQ(errorOf(ask(2)), 134);
    };
    now += seconds(1.999);
    expectNotReady();
    now += seconds(0.001);
    EXPECT_EQ(ask(hostReadyCheck).bodyJSON, R"({"is_host_ready":true})");
    EXPECT_EQ(errorOf(tell(trackList)), 0);
    service->restart(now);
    expectNotReady();
}

TEST_F(ScriptingServiceTest, RefusesTheChosenNumberOfRequests) {
    registered();
    service->refuseNext(3);
    EXPECT_EQ(errorOf(tell(trackList)), 138);
    EXPECT_EQ(ask(hostReadyCheck).bodyJSON, R"({"is_host_ready":false})");
    EXPECT_EQ(errorOf(tell(setMute, names(R"("Kick")", true))), 138);
    EXPECT_FALSE(session.find(1)->mute);
    EXPECT_EQ(errorOf(tell(trackList)), 0);
}

TEST_F(ScriptingServiceTest, SaysWhyItIsBusyAsChosen) {
    for (const auto& [error, number] : std::map<BusyError, int>{
             {BusyError::hostNotReady, 134}, {BusyError::commandTimedOut, 137}, {BusyError::hostIsBusy, 138}}) {
        ScriptingOptions options;
        options.busyError = error;
        start(options);
        service->refuseNext(1);
        EXPECT_EQ(errorOf(ask(registration, whoWeAre)), number);
    }
}

TEST_F(ScriptingServiceTest, IsBusyInBurstsWhereThatIsChosen) {
    ScriptingOptions options;
    options.busyOneIn = 10;
    options.busyBurst = 4;
    start(options);
    std::vector<int> bursts; // their lengths; two may follow each other at once
    int current = 0, refused = 0;
    for (int i = 0; i < 2000; ++i) {
        if (ask(hostReadyCheck).bodyJSON == R"({"is_host_ready":false})") {
            ++refused;
            ++current;
        } else if (current > 0) {
            bursts.push_back(std::exchange(current, 0));
        }
    }
    EXPECT_GT(refused, 300);
    EXPECT_LT(refused, 1000);
    for (const int length : bursts)
        EXPECT_EQ(length % 4, 0);
}

TEST_F(ScriptingServiceTest, AnswersInCamelCaseWhereThatIsChosen) {
    ScriptingOptions options;
    options.camelCase = true;
    start(options);
    EXPECT_EQ(ask(hostReadyCheck).bodyJSON, R"({"isHostReady":true})");
    id = ScriptingJSON::parse(ask(registration, whoWeAre).bodyJSON)["sessionId"].get<std::string>();
    EXPECT_EQ(tell(sessionName).bodyJSON, R"({"sessionName":"Evening Light"})");
    EXPECT_THAT(tell(trackList).bodyJSON, HasSubstr("\"trackList\""));
}

TEST_F(ScriptingServiceTest, SpellsItsErrorsAsChosen) {
    ScriptingOptions options;
    options.errorTypes = ErrorTypeSpelling::name;
    start(options);
    EXPECT_THAT(ask(2).errorJSON, HasSubstr(R"("command_error_type":"PT_UnsupportedCommand")"));
}

TEST_F(ScriptingServiceTest, SaysOfAnUnknownSessionWhatIsChosen) {
    for (const auto& [error, number] : std::map<UnknownSessionError, int>{{UnknownSessionError::unknownError, 100},
                                                                          {UnknownSessionError::invalidParameter, 126},
                                                                          {UnknownSessionError::forbidden, 127},
                                                                          {UnknownSessionError::sessionID, 403}}) {
        ScriptingOptions options;
        options.unknownSession = error;
        start(options);
        EXPECT_EQ(errorOf(ask(trackList, "", "wrong")), number);
    }
}

TEST_F(ScriptingServiceTest, RefusesRequestsOfALaterVersionThanItsOwn) {
    ScriptingOptions options;
    options.version = 4;
    start(options);
    ScriptingRequest request;
    request.command = hostReadyCheck;
    request.version = 5;
    EXPECT_EQ(errorOf(service->answer(request, connection, now)), 401);
    request.version = 4;
    EXPECT_EQ(errorOf(service->answer(request, connection, now)), 0);
    EXPECT_EQ(service->answer(request, connection, now).version, 4);
}

TEST_F(ScriptingServiceTest, RefusesSettersByTheKindOfTrack) {
    using enum SimulatedTrack::Type;
    const std::map<SimulatedTrack::Type, std::vector<int>> allowed{
        {audio, {setMute, setSolo, setRecordEnable, setInputMonitor}},
        {instrument, {setMute, setSolo, setRecordEnable, setInputMonitor}},
        {midi, {setMute, setSolo, setRecordEnable}},
        {aux, {setMute, setSolo}},
        {master, {}},
        {vca, {setMute, setSolo, setRecordEnable, setInputMonitor}},
        {video, {}}};
    for (const auto& [type, commands] : allowed) {
        session.change(1, [&](SimulatedTrack& track) { track.type = type; });
        for (const int command : {setMute, setSolo, setRecordEnable, setInputMonitor})
            EXPECT_EQ(errorOf(tell(command, names(R"("Vox","Kick")", true))),
                      std::ranges::count(commands, command) > 0 ? 0 : 130)
                << command;
    }
}

TEST_F(ScriptingServiceTest, FailsTheReadyCheckWhereThatIsChosen) {
    ScriptingOptions options;
    options.readyAfter = seconds(2);
    options.readyCheckFails = true;
    start(options);
    EXPECT_EQ(errorOf(ask(hostReadyCheck)), 134);
    now += seconds(2);
    EXPECT_EQ(ask(hostReadyCheck).bodyJSON, R"({"is_host_ready":true})");
}

TEST_F(ScriptingServiceTest, ListsNoTracksOfAClosedSessionWhereThatIsChosen) {
    ScriptingOptions options;
    options.closedSessionListsNothing = true;
    start(options);
    registered();
    session.close();
    const ScriptingReply reply = tell(trackList);
    EXPECT_EQ(reply.status, ScriptingStatus::completed);
    EXPECT_TRUE(ScriptingJSON::parse(reply.bodyJSON)["track_list"].empty());
    EXPECT_EQ(errorOf(tell(sessionName)), 106);
}

TEST_F(ScriptingServiceTest, HasAReplyForADialogAndOneForAJobInProgress) {
    ScriptingRequest request;
    request.taskID = "task 9";
    request.command = trackList;
    EXPECT_EQ(errorOf(service->refusal(request)), 106);
    const ScriptingReply reply = service->inProgress(request);
    EXPECT_EQ(reply.status, ScriptingStatus::inProgress);
    EXPECT_EQ(reply.taskID, "task 9");
    EXPECT_EQ(reply.bodyJSON, "");
    EXPECT_EQ(reply.errorJSON, "");
}

TEST_F(ScriptingServiceTest, NotesWhichTracksWereSwitched) {
    tell(setSolo, names(R"("Vox","Kick")", true));
    tell(setSolo, names(R"("Nobody")", true));
    EXPECT_THAT(switched, ElementsAre(std::tuple(setSolo, true, session.findByName("Vox")->id),
                                      std::tuple(setSolo, true, session.findByName("Kick")->id)));
}

} // namespace
} // namespace lumbrine
