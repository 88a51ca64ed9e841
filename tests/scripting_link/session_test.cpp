// Registering, and what happens when the service no longer knows the session.
#include "ptsl/testing/service_frames.h"
#include "tests/scripting_link/envelope_service.h"

namespace lumbrine::service {
namespace {

using testing::ElementsAre;

class Session : public ClientTest {
protected:
    // Sessions "S-1", "S-2" and so on, each known until the next one is given.
    void giveNewSessions() {
        scripted.answers[registerCommand] = [this](const Request&) {
            current = "S-" + std::to_string(++given);
            return reply("{\"session_id\":\"" + current + "\"}");
        };
        scripted.answers[trackListCommand] = [this](const Request& request) {
            return request.session == current ? reply(R"({"track_list":[{"name":"Kick"}]})")
                                              : failure("unknown session");
        };
    }

    std::string current;
    int given = 0;
};

TEST_F(Session, IsAskedForOnceOnly) {
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(client.trackList());
    ASSERT_TRUE(client.setMute({"Kick"}, true));
    EXPECT_THAT(scripted.commands(),
                ElementsAre(registerCommand, trackListCommand, trackListCommand, trackListCommand, muteCommand));
}

TEST_F(Session, IsAskedForBeforeAnyFirstCommand) {
    ASSERT_TRUE(client.setSolo({"Kick"}, true));
    EXPECT_THAT(scripted.commands(), ElementsAre(registerCommand, soloCommand));
}

TEST_F(Session, IsTakenFromEitherSpelling) {
    answer(registerCommand, reply(R"({"sessionId":"camel"})"));
    ASSERT_TRUE(client.trackList());
    EXPECT_EQ(scripted.requests.at(1).session, "camel");
}

TEST_F(Session, IsTakenFromTheOtherSpellingWhenTheFirstIsNoText) {
    answer(registerCommand, reply(R"({"session_id":5,"sessionId":"camel"})"));
    ASSERT_TRUE(client.trackList());
    EXPECT_EQ(scripted.requests.at(1).session, "camel");
}

TEST_F(Session, MustBeAText) {
    const Texts expected{"PTSL malformed response: no session_id returned",
                         "PTSL 応答が壊れている: session_id が返らなかった"};
    for (const char* without : {"", "{}", R"({"session_id":""})", R"({"session_id":"","sessionId":"camel"})",
                                R"({"session_id":5})", R"({"sessionId":null})", R"({"session_id":["S-1"]})"}) {
        answer(registerCommand, reply(without));
        EXPECT_EQ(textsOfTrackList(), expected) << without;
    }
}

TEST_F(Session, IsAskedForAgainAfterRegisteringFailed) {
    answer(registerCommand, failure("not now"));
    EXPECT_EQ(errorOf(client.trackList()), "PTSL command failed: not now");
    EXPECT_THAT(scripted.commands(), ElementsAre(registerCommand));
    answer(registerCommand, reply(R"({"session_id":"S-1"})"));
    EXPECT_TRUE(client.trackList());
}

TEST_F(Session, IsRenewedWhenTheTrackListIsRefused) {
    giveNewSessions();
    ASSERT_TRUE(client.trackList());
    current = "forgotten";
    const auto tracks = client.trackList();
    ASSERT_TRUE(tracks) << errorOf(tracks);
    EXPECT_EQ(tracks->size(), 1u);
    EXPECT_THAT(scripted.commands(),
                ElementsAre(registerCommand, trackListCommand, trackListCommand, registerCommand, trackListCommand));
    EXPECT_EQ(scripted.requests[2].session, "S-1");
    EXPECT_EQ(scripted.requests[3].session, "");
    EXPECT_EQ(scripted.requests[4].session, "S-2");
}

TEST_F(Session, IsRenewedOnceOnlyForOneTrackList) {
    answer(trackListCommand, failure("host is busy"));
    EXPECT_EQ(errorOf(client.trackList()), "PTSL command failed: host is busy");
    EXPECT_THAT(scripted.commands(), ElementsAre(registerCommand, trackListCommand, registerCommand, trackListCommand));
}

TEST_F(Session, IsGoneWhenItCannotBeRenewed) {
    ASSERT_TRUE(client.trackList());
    answer(trackListCommand, failure("unknown session"));
    answer(registerCommand, failure("host not ready"));
    EXPECT_EQ(errorOf(client.trackList()), "PTSL command failed: host not ready");
    answer(registerCommand, reply(R"({"session_id":"S-9"})"));
    ASSERT_TRUE(client.setMute({"Kick"}, true));
    EXPECT_EQ(scripted.commands().at(4), registerCommand);
    EXPECT_EQ(scripted.requests.at(5).session, "S-9");
}

TEST_F(Session, IsNotRenewedByTheSetters) {
    ASSERT_TRUE(client.trackList());
    for (const std::uint64_t command : {muteCommand, soloCommand, inputMonitorCommand})
        answer(command, failure("no such track"));
    EXPECT_EQ(errorOf(client.setMute({"Kick"}, true)), "PTSL command failed: no such track");
    EXPECT_EQ(errorOf(client.setSolo({"Kick"}, true)), "PTSL command failed: no such track");
    EXPECT_EQ(errorOf(client.setInputMonitor("Kick", true)), "PTSL command failed: no such track");
    EXPECT_THAT(scripted.commands(),
                ElementsAre(registerCommand, trackListCommand, muteCommand, soloCommand, inputMonitorCommand));
    EXPECT_EQ(scripted.requests.back().session, "S-1");
}

TEST_F(Session, SurvivesEveryOtherFailure) {
    ASSERT_TRUE(client.trackList());
    for (const char* broken : {"[]", "{"}) {
        answer(trackListCommand, reply(broken));
        EXPECT_FALSE(client.trackList());
    }
    streams.fail(VirtualStreams::Call::receive, ECONNRESET, 2);
    EXPECT_FALSE(client.trackList());
    streams.stopListening(ScriptedService::port);
    streams.fail(VirtualStreams::Call::receive, ECONNRESET, 1);
    EXPECT_FALSE(client.trackList());
    EXPECT_EQ(std::ranges::count(scripted.commands(), registerCommand), 1);
    EXPECT_EQ(scripted.requests.back().session, "S-1");
}

TEST_F(Session, IsRenewedAfterTheServiceWasRestarted) {
    giveNewSessions();
    ASSERT_TRUE(client.trackList());
    current = "of nobody";
    scripted.greet = nullptr;
    streams.fail(VirtualStreams::Call::send, EPIPE, 1); // the old connection
    const auto tracks = client.trackList();
    ASSERT_TRUE(tracks) << errorOf(tracks);
    EXPECT_EQ(scripted.received.size(), 2u);
}

} // namespace
} // namespace lumbrine::service
