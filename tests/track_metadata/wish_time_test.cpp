// Wishes to the scripting service are carried out soon, or not at all.
#include "model/testing/session_columns.h"
#include "remote/command_builder.h"
#include "tests/track_metadata/metadata_test.h"

namespace lumbrine {
namespace {

constexpr const char* muteDropped = "✗ Dropped group mute: Pro Tools did not answer";

class WishTimeTest : public WishTest {
protected:
    WishTimeTest() {
        serve(threeTracks);
        refresh();
        tell();
        service.requests.clear();
    }

    void mute(const std::vector<int>& members, bool enabled = true) {
        bench.parts().wishes.setGroup(TrackSwitch::mute, members, enabled, origin());
    }
    void solo(const std::vector<int>& members, bool enabled = true) {
        bench.parts().wishes.setGroup(TrackSwitch::solo, members, enabled, origin());
    }

    void fallSilent() {
        service.answer = [](service::ScriptedService::Call&) {};
    }
    void quit() {
        service.answer = [](service::ScriptedService::Call& call) { call.line.reset(); };
        refresh();
        bench.streams.stopListening(31416);
        bench.lines.clear();
    }
    void answerAgain() { service.answer = usual; }

    // The list, the kick muted or not.
    void serveKick(bool muted) {
        serve(std::string(R"({"name":"Kick Drum","track_attributes":{"is_muted":)") + (muted ? "true" : "false") +
              R"(}},{"name":"Lead Vocals"},{"name":"Backing Vocals"})");
    }

    static std::string muteOf(const std::string& name, bool enabled = true) {
        return std::string(R"(85 {"enabled":)") + (enabled ? "true" : "false") + R"(,"track_names":[")" + name + "\"]}";
    }

    std::function<void(service::ScriptedService::Call&)> usual = service.answer;
};

TEST_F(WishTimeTest, AreCarriedOutAtOnceWhenTheServiceIsFree) {
    mute({0});
    world.runtime.runUntilIdle();
    EXPECT_THAT(takeSetters(), ElementsAre(muteOf("Kick Drum")));
}

TEST_F(WishTimeTest, AreDroppedThreeSecondsAfterTheirDatagram) {
    fallSilent();
    bench.parts().metadata.refreshFullNames(); // takes six seconds
    bench.run(1s);
    mute({0});
    bench.run(2999ms);
    EXPECT_THAT(bench.takeLines(), IsEmpty());
    bench.run(1ms);
    EXPECT_THAT(bench.takeLines(), ElementsAre(muteDropped));
    service.requests.clear();
    answerAgain();
    bench.run(30s);
    EXPECT_THAT(takeSetters(), IsEmpty());
}

TEST_F(WishTimeTest, AreCarriedOutInTheirLastMomentToo) {
    fallSilent();
    bench.parts().metadata.refreshFullNames();
    bench.run(3001ms); // it asks again, until six seconds are over
    mute({0});
    answerAgain();
    service.requests.clear();
    bench.run(2998ms);
    EXPECT_THAT(takeSetters(), IsEmpty());
    bench.run(1ms);
    EXPECT_THAT(takeSetters(), ElementsAre(muteOf("Kick Drum")));
}

TEST_F(WishTimeTest, AreCountedFromTheArrivalOfTheDatagram) {
    refuse(muteCommand, 138);
    bench.parts().wishes.setGroup(TrackSwitch::mute, {0}, true,
                                  {.owner = owner, .at = world.runtime.now() - 2s}); // main was busy
    bench.run(999ms);
    EXPECT_EQ(std::ranges::count(bench.lines, muteDropped), 0);
    bench.run(1ms);
    EXPECT_EQ(std::ranges::count(bench.lines, muteDropped), 1);
}

TEST_F(WishTimeTest, AreToldOnceForARunOfDrops) {
    quit();
    for (int i = 0; i < 5; ++i) {
        mute({i % 3});
        solo({i % 3});
        bench.run(1s);
    }
    bench.run(3s);
    EXPECT_THAT(bench.takeLines(), ElementsAre(muteDropped, "✗ Dropped group solo: Pro Tools did not answer"));
}

TEST_F(WishTimeTest, WaitForABusyHost) {
    refuse(muteCommand, 138);
    mute({0});
    bench.run(1s);
    EXPECT_EQ(takeSetters().size(), 5U); // at once, and every 250 ms
    service.answers.erase(muteCommand);
    bench.run(250ms);
    EXPECT_THAT(takeSetters(), ElementsAre(muteOf("Kick Drum")));
}

TEST_F(WishTimeTest, WaitForAServiceThatIsNotRunning) {
    quit();
    mute({0});
    bench.run(1s);
    service::EnvelopeService back(bench.streams);
    bench.run(250ms);
    EXPECT_THAT(back.commands(), ElementsAre(muteCommand, trackListCommand));
}

TEST_F(WishTimeTest, RegisterAgainWithAServiceThatDoesNotKnowTheSession) {
    refuse(muteCommand, 403);
    mute({0});
    world.runtime.runUntilIdle();
    service.answers.erase(muteCommand);
    bench.run(250ms);
    EXPECT_EQ(service.requests[1].command, registerCommand);
    EXPECT_EQ(service.requests[2].command, muteCommand);
}

// ---- The newest wins

TEST_F(WishTimeTest, GiveWayToTheNewestForTheSameTrackAndKind) {
    fallSilent();
    bench.parts().metadata.refreshFullNames();
    bench.run(3001ms);
    answerAgain();
    mute({0, 1});
    for (int i = 0; i < 19; ++i)
        mute({0}, i % 2 != 0);
    solo({0});
    service.requests.clear();
    bench.run(2999ms);
    EXPECT_THAT(takeSetters(), ElementsAre(muteOf("Lead Vocals"), muteOf("Kick Drum", false),
                                           R"(86 {"enabled":true,"track_names":["Kick Drum"]})"));
    EXPECT_THAT(bench.lines, testing::Contains("✓ Group: mute ON for 1 tracks"));
    EXPECT_THAT(bench.lines, testing::Not(testing::Contains(testing::HasSubstr("Dropped"))));
}

TEST_F(WishTimeTest, AreAtMostThirtyTwo) {
    Lines names(40);
    for (std::size_t i = 0; i < names.size(); ++i)
        names[i] = "T" + std::to_string(i);
    bench.setTrackMap(names, 0);
    setColumn(published.session, &Track::name, {names.begin(), names.end()});
    std::string list;
    for (const std::string& name : names)
        list += (list.empty() ? "{\"name\":\"" : ",{\"name\":\"") + name + "\"}";
    serve(list);
    refresh();
    tell();
    refuse(muteCommand, 138);
    for (int i = 0; i < 40; ++i)
        mute({i});
    EXPECT_THAT(bench.lines, ElementsAre("✗ Dropped group mute: too many at once"));
    service.answers.erase(muteCommand);
    service.requests.clear();
    bench.run(1s);
    const Lines setters = takeSetters();
    EXPECT_EQ(setters.size(), 32U);
    EXPECT_EQ(setters.back(), muteOf("T39"));
}

// ---- What may have been carried out

TEST_F(WishTimeTest, AreRepeatedWhereTheListShowsThatTheyWereNotCarriedOut) {
    for (const int number : {106, 137}) {
        serveKick(false);
        refuse(muteCommand, number);
        mute({0});
        world.runtime.runUntilIdle();
        EXPECT_THAT(service.commands(), ElementsAre(muteCommand, trackListCommand));
        service.answers.erase(muteCommand);
        service.requests.clear();
        bench.run(250ms);
        EXPECT_THAT(takeSetters(), ElementsAre(muteOf("Kick Drum"))) << number;
        EXPECT_THAT(bench.takeLines(), testing::Contains("✓ Group: mute ON for 1 tracks"));
    }
}

TEST_F(WishTimeTest, AreRepeatedAfterAnAnswerThatIsNoResultWhereTheListShowsThatTheyWereNotCarriedOut) {
    serveKick(false);
    service.answers[muteCommand] = [](const service::Request&) { return service::failure("", 2); }; // in progress
    mute({0});
    world.runtime.runUntilIdle();
    EXPECT_THAT(service.commands(), ElementsAre(muteCommand, trackListCommand));
    service.answers.erase(muteCommand);
    service.requests.clear();
    bench.run(250ms);
    EXPECT_THAT(takeSetters(), ElementsAre(muteOf("Kick Drum")));
}

TEST_F(WishTimeTest, AreNotRepeatedWhereTheListShowsThatTheyWereCarriedOut) {
    serveKick(true);
    bench.streams.fail(VirtualStreams::Call::receive, ECONNRESET, 1); // the answer is lost
    mute({0});
    bench.run(5s);
    EXPECT_THAT(takeSetters(), ElementsAre(muteOf("Kick Drum")));
    EXPECT_THAT(bench.takeLines(), testing::Contains("✓ Group: mute ON for 1 tracks"));
}

TEST_F(WishTimeTest, AreNeitherRepeatedNorDroppedBeforeThereIsAList) {
    refuse(muteCommand, 106);
    refuse(trackListCommand, 106);
    mute({0});
    bench.run(2999ms);
    EXPECT_THAT(takeSetters(), ElementsAre(muteOf("Kick Drum")));
    EXPECT_EQ(std::ranges::count(bench.lines, muteDropped), 0);
    bench.run(1ms);
    EXPECT_EQ(std::ranges::count(bench.lines, muteDropped), 1);
}

TEST_F(WishTimeTest, AreNotRepeatedForTracksThatHaveANewerWish) {
    serveKick(false);
    refuse(muteCommand, 137);
    mute({0});
    world.runtime.runUntilIdle();
    mute({0}, false);
    service.answers.erase(muteCommand);
    service.requests.clear();
    bench.run(1s);
    EXPECT_THAT(takeSetters(), ElementsAre(muteOf("Kick Drum", false)));
}

// ---- Whose they are

class OwnedWishTest : public OwnedModelTest {
protected:
    OwnedWishTest() {
        bench.setTrackMap({"Kick", "LdVo"}, 0);
        setColumn(bench.state().published.session, &Track::name, {"Kick Drum", "Lead Vocals"});
        bench.parts().table.sendChangedRows();
        service.answers[85] = [](const service::Request&) {
            return service::failure(R"({"errors":[{"command_error_type":138}]})");
        };
    }

    std::size_t setters() const { return static_cast<std::size_t>(std::ranges::count(service.commands(), 85U)); }

    const Bytes muteKick = remote::groupMuteCommand(true, std::vector<remote::Member>{0});
    service::EnvelopeService service{bench.streams};
};

TEST_F(OwnedWishTest, AreDroppedWhenAnotherDeviceTakesControl) {
    phone->send(muteKick);
    settle();
    EXPECT_EQ(setters(), 1U);
    const auto other = bench.phone("192.168.1.8");
    other->send(remote::takeOverCommand());
    settle();
    service.answers.erase(85);
    bench.run(2s);
    EXPECT_EQ(setters(), 1U);
    EXPECT_THAT(bench.lines, testing::Contains("✗ Dropped group mute: another device has taken control"));
}

TEST_F(OwnedWishTest, AreKeptWhileTheirDeviceIsInControl) {
    phone->send(muteKick);
    settle();
    service.answers.erase(85);
    bench.run(250ms);
    EXPECT_EQ(setters(), 2U);
}

} // namespace
} // namespace lumbrine
