// Switching input monitoring of the track on a strip over.
#include "model/testing/session_columns.h"
#include "remote/command_builder.h"
#include "tests/track_metadata/metadata_test.h"

namespace lumbrine {
namespace {

// The client has been told that the lead vocals are monitored, on strip 1.
class InputMonitorTest : public WishTest {
protected:
    InputMonitorTest() {
        serve(R"({"name":"Kick Drum"},)"
              R"({"name":"Lead Vocals","track_attributes":{"is_input_monitoring_on":"SetExplicitly"}},)"
              R"({"name":"Backing Vocals"})");
        refresh();
        bench.lines.clear();
    }

    void toggle(int strip) {
        bench.parts().wishes.toggleInputMonitor(*Strip::of(strip), origin());
        world.runtime.runUntilIdle();
    }
};

TEST_F(InputMonitorTest, AsksForTheOppositeOfWhatTheClientWasTold) {
    toggle(0);
    toggle(1);
    EXPECT_THAT(argumentsOf(inputMonitorCommand), ElementsAre(R"({"enabled":true,"track_names":["Kick Drum"]})",
                                                              R"({"enabled":false,"track_names":["Lead Vocals"]})"));
}

// The user at the computer has just switched it over; the client wants what it does not see.
TEST_F(InputMonitorTest, GoesByWhatTheClientWasToldNotByWhatIsKnownSince) {
    setColumn(published.session, &Track::inputMonitor, {false, false, false});
    toggle(1);
    EXPECT_THAT(argumentsOf(inputMonitorCommand), ElementsAre(R"({"enabled":false,"track_names":["Lead Vocals"]})"));
}

TEST_F(InputMonitorTest, TwiceBeforeTheClientIsToldAsksForTheSameTwice) {
    service.answers.erase(trackListCommand); // so nothing is told
    toggle(0);
    toggle(0);
    EXPECT_THAT(argumentsOf(inputMonitorCommand), ElementsAre(R"({"enabled":true,"track_names":["Kick Drum"]})",
                                                              R"({"enabled":true,"track_names":["Kick Drum"]})"));
}

TEST_F(InputMonitorTest, IsThatOfTheTrackThatTheClientWasShown) {
    published.bankOffset = 1; // a walk passes by
    toggle(0);
    EXPECT_THAT(argumentsOf(inputMonitorCommand), ElementsAre(R"({"enabled":true,"track_names":["Kick Drum"]})"));
    published.banksUsedBy.reset();
    bench.parts().mirror.send(occasion::bankView);
    service.requests.clear();
    toggle(0);
    EXPECT_THAT(argumentsOf(inputMonitorCommand), ElementsAre(R"({"enabled":false,"track_names":["Lead Vocals"]})"));
}

TEST_F(InputMonitorTest, IsDroppedWhenTheStripWasToldAnotherTrackMeanwhile) {
    Asked earlier = origin();
    bench.run(1s);
    published.bankOffset = 1;
    bench.parts().mirror.send(occasion::bankView);
    bench.parts().wishes.toggleInputMonitor(*Strip::of(0), earlier);
    EXPECT_THAT(bench.takeLines(), ElementsAre("✗ Dropped input monitor: its track is no longer shown"));
}

TEST_F(InputMonitorTest, IsShownToTheClientAtOnce) {
    service.requests.clear();
    toggle(0);
    EXPECT_EQ(service.requests.back().command, trackListCommand);
    EXPECT_THAT(bench.lines, IsEmpty());
}

TEST_F(InputMonitorTest, IsDroppedWhereNoTrackIsShown) {
    service.requests.clear();
    toggle(3); // beyond the session
    EXPECT_THAT(bench.takeLines(), ElementsAre("✗ Dropped input monitor: no track was shown yet"));
    EXPECT_THAT(service.requests, IsEmpty());
}

TEST_F(InputMonitorTest, IsDroppedOnStripsThatTheClientDoesNotSee) {
    const Lines names(12, "Trk");
    bench.setTrackMap(names, 0);
    setColumn(published.session, &Track::name, {names.begin(), names.end()});
    bench.parts().mirror.send(occasion::bankView); // eight of them
    service.requests.clear();
    toggle(8);
    EXPECT_THAT(bench.takeLines(), ElementsAre("✗ Dropped input monitor: no track was shown yet"));
    EXPECT_THAT(service.requests, IsEmpty());
}

TEST_F(InputMonitorTest, IsDroppedWhenTheServiceRefuses) {
    refuse(inputMonitorCommand, 130);
    toggle(0);
    EXPECT_THAT(bench.takeLines(), ElementsAre("✗ Dropped input monitor: Pro Tools refused it"));
}

class JapaneseInputMonitorTest : public WishTest {
protected:
    JapaneseInputMonitorTest() : WishTest(true) {}
};

TEST_F(JapaneseInputMonitorTest, IsLoggedInJapanese) {
    tell();
    bench.parts().wishes.toggleInputMonitor(*Strip::of(0), origin());
    EXPECT_THAT(bench.takeLines(), ElementsAre("✗ 入力モニターの切り替えを中止（トラックのフルネームが不明なため）"));
}

class InputMonitorDatagramTest : public OwnedModelTest {
protected:
    InputMonitorDatagramTest() {
        service.answers[3] = [](const service::Request&) {
            return service::reply(R"({"track_list":[{"name":"Kick Drum"},{"name":"Lead Vocals"}]})");
        };
        bench.setTrackMap({"Kick", "LdVo"}, 0);
        bench.parts().metadata.refreshFullNames();
        settle();
        service.requests.clear();
    }

    service::EnvelopeService service{bench.streams};
};

TEST_F(InputMonitorDatagramTest, SwitchesTheTrackOnTheClientsStripOver) {
    phone->send(remote::inputMonitorToggleCommand(*Strip::of(1)));
    settle();
    ASSERT_FALSE(service.requests.empty());
    EXPECT_EQ(service.requests.front().command, 90U);
    EXPECT_EQ(service.requests.front().json, R"({"enabled":true,"track_names":["Lead Vocals"]})");
}

TEST_F(InputMonitorDatagramTest, LeavesStripsAloneThatAreNone) {
    phone->send({0x01, 0x0E, 0x10});
    phone->send({0x01, 0x0E, 0xFF});
    settle();
    EXPECT_THAT(service.requests, IsEmpty());
}

} // namespace
} // namespace lumbrine
