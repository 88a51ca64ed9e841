// The checkers of what is told see a value that is another track's, or no longer the host's.
#include "tests/simulation/testing/host_tracks.h"
#include "tests/simulation/testing/wire_actions.h"
#include "tests/simulation/told_checker.h"

namespace lumbrine::simulation {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

const Bytes name3{0x01, 0x10, 0x03, 'B', 'a', 's', 's'};

Bytes fader3(int value) {
    return {0x01, 0x12, 0x03, static_cast<std::uint8_t>(value / 256), static_cast<std::uint8_t>(value % 256)};
}

// A row of session index 3 that knows the fader.
Bytes row3(int fader, bool solo = false, const std::string& comment = "") {
    Bytes bytes{0x01,
                0x1B,
                0x00,
                0x03,
                1,
                static_cast<std::uint8_t>(fader / 256),
                static_cast<std::uint8_t>(fader % 256),
                0,
                solo ? std::uint8_t{1} : std::uint8_t{0},
                0,
                0,
                0,
                0,
                0,
                0,
                0,
                4,
                'B',
                'a',
                's',
                's',
                static_cast<std::uint8_t>(comment.size())};
    bytes.insert(bytes.end(), comment.begin(), comment.end());
    return bytes;
}

// Strip 3 shows track 4, "Bass", with its fader at 128; track 5, "Gtr", is at 160.
class Told : public testing::Test {
protected:
    Told() {
        evidence.sent.peers = {"phone"};
        scenario.host.faderBits = 14;
        evidence.begun = at(0);
        evidence.jobs.ended = at(12);
        evidence.record.lists = {{at(0), {1, 2, 3, 4, 5}}};
        for (int id = 1; id <= 5; ++id)
            state(0, id, "T" + std::to_string(id), 32 * id);
        state(0, 4, "Bass", 128);
        evidence.record.shown = {{at(0), 3, 4, "Bass"}};
        for (int second = 0; second <= 12; ++second)
            acceptance.accepted.push_back({at(second), "phone", {0x01, 0x07, 0x00, 0x00}});
        acceptance.changes = {{at(0), std::nullopt, "phone"}};
        tell(0.1, name3);
        tell(0.1, fader3(128));
    }

    void state(double time, int id, const std::string& name, int fader) {
        evidence.record.states.push_back({at(time), trackCalled(name, id, fader)});
    }
    void tell(double time, Bytes bytes) { evidence.sent.list.push_back({at(time), 0, std::move(bytes)}); }

    std::vector<std::string> tellings() {
        return checkTellings(scenario, evidence, ShownTracks(evidence.sent, evidence.record, evidence.jobs.runs));
    }
    std::vector<std::string> quietMoments() { return checkQuietMoments(scenario, evidence, acceptance); }

    Scenario scenario;
    Evidence evidence;
    Acceptance acceptance;
};

TEST_F(Told, FadersOfAStripAreItsTracks) {
    EXPECT_THAT(tellings(), IsEmpty());
    tell(1, fader3(160));
    EXPECT_THAT(tellings(), SizeIs(1));
    state(0.5, 4, "Bass", 160);
    EXPECT_THAT(tellings(), IsEmpty());
}

TEST_F(Told, FadersMayBeWhatTheClientAskedFor) {
    tell(1, fader3(300));
    EXPECT_THAT(tellings(), SizeIs(1));
    evidence.datagrams = {{at(0.9), "phone", {0x01, 0x01, 0x03, 0x01, 0x2C}}};
    EXPECT_THAT(tellings(), IsEmpty());
}

TEST_F(Told, FullNamesAreTheTracksOrThePositions) {
    const auto fullName = [](const std::string& name) {
        Bytes bytes{0x01, 0x18, 0x03};
        bytes.insert(bytes.end(), name.begin(), name.end());
        return bytes;
    };
    tell(1, fullName("Bass"));
    EXPECT_THAT(tellings(), IsEmpty());
    tell(2, fullName("T5"));
    EXPECT_THAT(tellings(), SizeIs(1));
    evidence.sent.list.insert(evidence.sent.list.end() - 1, {at(2), 0, {0x01, 0x16, 0x00, 0x01, 0x00, 0x05, 0x08}});
    EXPECT_THAT(tellings(), IsEmpty());
}

TEST_F(Told, RowsAreOfOneTrack) {
    tell(1, row3(128));
    EXPECT_THAT(tellings(), IsEmpty());
    tell(2, row3(160));
    tell(3, row3(128, true));
    tell(4, row3(128, false, "track 5, remark 0"));
    EXPECT_THAT(tellings(), SizeIs(3));
}

TEST_F(Told, QuietMomentsHaveTheHostsValues) {
    EXPECT_THAT(quietMoments(), IsEmpty());
    state(1, 4, "Bass", 200); // and the client is not told
    EXPECT_THAT(quietMoments().size(), testing::Ge(1u));
    EXPECT_THAT(quietMoments()[0], HasSubstr("the fader 128 instead of 200 of strip 3"));
}

TEST_F(Told, MomentsAreNotQuietBesideJobsTroublesAndChanges) {
    tell(5, fader3(160));
    EXPECT_FALSE(quietMoments().empty());
    evidence.disturbances = {{at(5), at(12)}};
    EXPECT_THAT(quietMoments(), IsEmpty());
    evidence.disturbances.clear();
    JobRun run;
    run.before = at(4);
    run.after = at(10);
    evidence.jobs.runs = {run};
    EXPECT_THAT(quietMoments(), IsEmpty());
}

TEST_F(Told, MomentsAreNotQuietWhileWhatWasAskedForMayBeOnItsWay) {
    tell(5, fader3(160));
    EXPECT_FALSE(quietMoments().empty());
    for (ReceivedDatagram& datagram : acceptance.accepted)
        if (datagram.at >= at(4)) datagram.bytes = {0x01, 0x01, 0x03, 0x00, 0xA0}; // every second
    EXPECT_THAT(quietMoments(), IsEmpty());
}

TEST_F(Told, RowsOfShownTracksAreTheHostsNow) {
    tell(1, {0x01, 0x16, 0x00, 0x00, 0x00, 0x05, 0x08});
    tell(1, row3(128));
    EXPECT_THAT(quietMoments(), IsEmpty());
    state(6, 4, "Bass", 200);
    tell(6, fader3(200));
    EXPECT_FALSE(quietMoments().empty());
    tell(6.1, row3(200));
    EXPECT_THAT(quietMoments(), IsEmpty());
}

TEST_F(Told, PositionsAreTheHosts) {
    tell(1, {0x01, 0x16, 0x00, 0x01, 0x00, 0x05, 0x08});
    EXPECT_FALSE(quietMoments().empty());
    tell(1, {0x01, 0x16, 0xFF, 0xFF, 0x00, 0x05, 0x08});
    EXPECT_THAT(quietMoments(), IsEmpty());
}

} // namespace
} // namespace lumbrine::simulation
