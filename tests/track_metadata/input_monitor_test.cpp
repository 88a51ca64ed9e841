// Flipping input monitoring of the track on a strip.
#include "model/testing/session_columns.h"
#include "remote/command_builder.h"
#include "tests/track_metadata/metadata_test.h"

namespace lumbrine {
namespace {

class InputMonitorTest : public MetadataTest {
protected:
    InputMonitorTest() {
        setColumn(published.session, &Track::name, {"Kick Drum", "Lead Vocals", "Backing Vocals"});
        serve(R"({"name":"Kick Drum"},)"
              R"({"name":"Lead Vocals","track_attributes":{"is_input_monitoring_on":"SetExplicitly"}})");
    }

    void toggle(int strip) {
        bench.parts().metadata.toggleInputMonitor(*Strip::of(strip));
        world.runtime.runUntilIdle();
    }
};

TEST_F(InputMonitorTest, IsTurnedOnWhereItIsOff) {
    toggle(0);
    EXPECT_THAT(argumentsOf(inputMonitorCommand), ElementsAre(R"({"enabled":true,"track_names":["Kick Drum"]})"));
}

TEST_F(InputMonitorTest, GoesByWhatProToolsHasNotByWhatIsKnown) {
    setColumn(published.session, &Track::inputMonitor, {false, false, false});
    toggle(1);
    EXPECT_THAT(argumentsOf(inputMonitorCommand), ElementsAre(R"({"enabled":false,"track_names":["Lead Vocals"]})"));
}

TEST_F(InputMonitorTest, IsThatOfTheTrackOnTheStrip) {
    published.bankOffset = 1;
    toggle(0);
    EXPECT_THAT(argumentsOf(inputMonitorCommand), ElementsAre(R"({"enabled":false,"track_names":["Lead Vocals"]})"));
}

TEST_F(InputMonitorTest, IsLeftAloneWhenTheTrackIsNotKnown) {
    toggle(3); // beyond the session
    published.bankOffset = -1;
    toggle(1);
    published.bankOffset = 0;
    published.session.tracks[0].name = "";
    toggle(0);
    EXPECT_THAT(service.requests, IsEmpty());
}

TEST_F(InputMonitorTest, IsLeftAloneWhenProToolsHasNoTrackOfThatName) {
    toggle(2);
    EXPECT_THAT(argumentsOf(inputMonitorCommand), IsEmpty());
    EXPECT_THAT(bench.lines, IsEmpty());
}

TEST_F(InputMonitorTest, FailureIsLoggedLikeAnyOtherOfTheService) {
    refuse(inputMonitorCommand);
    toggle(0);
    EXPECT_THAT(
        bench.takeLines(),
        ElementsAre("Track colors: unavailable (PTSL command failed: {\"errors\":[]}) → names are read from the "
                    "screen, no colors shown"));
    refuse(trackListCommand);
    toggle(0);
    EXPECT_THAT(bench.takeLines(), IsEmpty());
}

class InputMonitorDatagramTest : public OwnedModelTest {
protected:
    InputMonitorDatagramTest() {
        service.answers[3] = [](const service::Request&) {
            return service::reply(R"({"track_list":[{"name":"Kick Drum"},{"name":"Lead Vocals"}]})");
        };
        bench.setTrackMap({"Kick", "LdVo"}, 0);
        setColumn(bench.state().published.session, &Track::name, {"Kick Drum", "Lead Vocals"});
    }

    service::EnvelopeService service{bench.streams};
};

TEST_F(InputMonitorDatagramTest, FlipsTheTrackOnTheClientsStrip) {
    phone->send(remote::inputMonitorToggleCommand(*Strip::of(1)));
    settle();
    ASSERT_FALSE(service.requests.empty());
    EXPECT_EQ(service.requests.back().command, 90U);
    EXPECT_EQ(service.requests.back().json, R"({"enabled":true,"track_names":["Lead Vocals"]})");
}

TEST_F(InputMonitorDatagramTest, LeavesStripsAloneThatAreNone) {
    phone->send({0x01, 0x0E, 0x10});
    phone->send({0x01, 0x0E, 0xFF});
    settle();
    EXPECT_THAT(service.requests, IsEmpty());
}

} // namespace
} // namespace lumbrine
