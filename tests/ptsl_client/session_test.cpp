// Registering, and what happens when the service no longer knows the session.
#include "ptsl/testing/service_frames.h"
#include "tests/ptsl_client/envelope_service.h"

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

std::string numbered(int number) {
    return R"({"errors":[{"command_error_type":)" + std::to_string(number) + "}]}";
}

TEST_F(Session, IsRenewedOnceOnlyForOneTrackList) {
    ASSERT_TRUE(client.trackList());
    answer(trackListCommand, failure(numbered(126)));
    EXPECT_FALSE(client.trackList());
    EXPECT_FALSE(client.trackList()); // so it is not the session
    EXPECT_THAT(scripted.commands(), ElementsAre(registerCommand, trackListCommand, trackListCommand, registerCommand,
                                                 trackListCommand, trackListCommand));
}

TEST_F(Session, IsRenewedForEachNumberThatMayMeanThatItIsUnknown) {
    for (const int number : {100, 126, 127, 403}) {
        ASSERT_TRUE(client.trackList());
        scripted.requests.clear();
        answer(trackListCommand, failure(numbered(number)));
        EXPECT_FALSE(client.trackList());
        EXPECT_THAT(scripted.commands(), ElementsAre(trackListCommand, registerCommand, trackListCommand)) << number;
        scripted.answers.erase(trackListCommand);
    }
}

TEST_F(Session, IsNotRenewedBecauseTheHostIsBusy) {
    ASSERT_TRUE(client.trackList());
    for (const int number : {106, 107, 134, 137, 138}) {
        answer(trackListCommand, failure(numbered(number)));
        EXPECT_EQ(errorOf(client.trackList()), "PTSL command failed: " + numbered(number));
    }
    EXPECT_EQ(std::ranges::count(scripted.commands(), registerCommand), 1);
}

TEST_F(Session, IsRenewedAlsoWhenNoCommandHasSucceededBefore) {
    answer(trackListCommand, failure(numbered(106))); // but the session is known
    EXPECT_FALSE(client.trackList());
    giveNewSessions(); // by now it is forgotten
    EXPECT_TRUE(client.trackList());
    EXPECT_EQ(std::ranges::count(scripted.commands(), registerCommand), 2);
}

// Its connection may have ended before it was of any use.
TEST_F(Session, IsRenewedOverAnotherConnectionHoweverNewItIs) {
    giveNewSessions();
    streams.fail(VirtualStreams::Call::send, EPIPE, 0);
    ASSERT_TRUE(client.prepare());
    current = "of the next connection";
    streams.fail(VirtualStreams::Call::receive, ECONNRESET, 1);
    EXPECT_TRUE(client.trackList());
    EXPECT_EQ(std::ranges::count(scripted.commands(), registerCommand), 2);
}

TEST_F(Session, IsThereBeforeTheFirstSetterWhenItIsPrepared) {
    ASSERT_TRUE(client.prepare());
    ASSERT_TRUE(client.prepare());
    EXPECT_THAT(scripted.commands(), ElementsAre(registerCommand));
    streams.stopListening(ScriptedService::port);
    streams.fail(VirtualStreams::Call::receive, ECONNRESET, 1);
    EXPECT_FALSE(client.setMute({"Kick"}, true)); // and the connection is gone
    EXPECT_EQ(errorOf(client.prepare()), "Cannot reach Pro Tools' PTSL (not running or disabled)");
}

// ---- Versions of the service

class Version : public Session {
protected:
    // A service of that version refuses all that is of a later one.
    void serveVersion(std::uint64_t newest) {
        const auto refusing = [newest](const Bytes& message) {
            return [newest, message](const Request& request) {
                return request.version > newest ? failure(numbered(401)) : message;
            };
        };
        scripted.answers[registerCommand] = refusing(reply(R"({"session_id":"S-1"})"));
        scripted.answers[trackListCommand] = refusing(reply(R"({"track_list":[]})"));
    }

    std::vector<std::uint64_t> versions() const {
        std::vector<std::uint64_t> all;
        for (const Request& request : scripted.requests)
            all.push_back(request.version);
        return all;
    }
};

TEST_F(Version, IsTheNewestThatTheServiceTakes) {
    serveVersion(3);
    ASSERT_TRUE(client.trackList());
    ASSERT_TRUE(client.trackList());
    EXPECT_THAT(versions(), ElementsAre(5, 4, 3, 3, 3));
}

TEST_F(Version, MayBeTheFirstThereWas) {
    serveVersion(2);
    ASSERT_TRUE(client.trackList());
    EXPECT_THAT(versions(), ElementsAre(5, 4, 3, 1, 1));
}

TEST_F(Version, MustBeOneOfThose) {
    serveVersion(0);
    EXPECT_EQ(errorOf(client.trackList()), "PTSL command failed: " + numbered(401));
    EXPECT_THAT(versions(), ElementsAre(5, 4, 3, 1));
}

TEST_F(Version, IsFoundAgainWhenAnOlderServiceTakesThePlace) {
    ASSERT_TRUE(client.trackList());
    scripted.requests.clear();
    serveVersion(4);
    EXPECT_TRUE(client.trackList());
    EXPECT_THAT(versions(), ElementsAre(5, 5, 4, 4));
}

// ---- What it survives

TEST_F(Session, IsGoneWhenItCannotBeRenewed) {
    ASSERT_TRUE(client.trackList());
    answer(trackListCommand, failure("unknown session"));
    answer(registerCommand, failure("host not ready")); // without a number
    EXPECT_EQ(errorOf(client.trackList()), "PTSL command failed: host not ready");
    answer(registerCommand, reply(R"({"session_id":"S-9"})"));
    ASSERT_TRUE(client.setMute({"Kick"}, true));
    EXPECT_EQ(scripted.commands().at(4), registerCommand);
    EXPECT_EQ(scripted.requests.at(5).session, "S-9");
}

TEST_F(Session, SurvivesARefusalOfASetter) {
    ASSERT_TRUE(client.trackList());
    const std::string words = numbered(107);
    for (const std::uint64_t command : {muteCommand, soloCommand, inputMonitorCommand})
        answer(command, failure(words));
    EXPECT_EQ(errorOf(client.setMute({"Kick"}, true)), "PTSL command failed: " + words);
    EXPECT_EQ(errorOf(client.setSolo({"Kick"}, true)), "PTSL command failed: " + words);
    EXPECT_EQ(errorOf(client.setInputMonitor("Kick", true)), "PTSL command failed: " + words);
    EXPECT_THAT(scripted.commands(),
                ElementsAre(registerCommand, trackListCommand, muteCommand, soloCommand, inputMonitorCommand));
    EXPECT_EQ(scripted.requests.back().session, "S-1");
}

TEST_F(Session, IsRenewedBeforeTheNextCommandWhenASetterFindsItUnknown) {
    ASSERT_TRUE(client.trackList());
    answer(muteCommand, failure(numbered(127)));
    const auto result = client.setMute({"Kick"}, true);
    ASSERT_FALSE(result);
    EXPECT_EQ(verdictOn(result.error()), Verdict::notYet);
    EXPECT_EQ(verdictOn(client.setMute({"Kick"}, true).error()), Verdict::refused); // so that is what it meant
    EXPECT_THAT(scripted.commands(),
                ElementsAre(registerCommand, trackListCommand, muteCommand, registerCommand, muteCommand));
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
