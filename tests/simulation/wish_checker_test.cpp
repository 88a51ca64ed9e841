// The checkers of wishes see a switch that the scripting service turned on another track, or the wrong way.
#include "tests/simulation/testing/host_tracks.h"
#include "tests/simulation/testing/wire_actions.h"
#include "tests/simulation/wish_checker.h"

namespace lumbrine::simulation {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

// Tracks 10 and 11, "J" and "K", in rows 9 and 10; strip 3 shows "J". The phone has been told, and that the strip's
// input is not monitored.
class Wishes : public testing::Test {
protected:
    static constexpr std::int32_t mute = 85, solo = 86, monitor = 90;

    Wishes() {
        evidence.sent.peers = {"phone"};
        evidence.record.lists = {{at(0), {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}}};
        evidence.record.states = {{at(0), trackCalled("J", 10)}, {at(0), trackCalled("K", 11)}};
        evidence.record.shown = {{at(0), 3, 10, "J"}};
        for (const std::uint8_t index : {std::uint8_t{9}, std::uint8_t{10}})
            tell(0.2, {0x01, 0x1B, 0x00, index, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1,
                       static_cast<std::uint8_t>('A' + index), 0});
        tell(0.2, {0x01, 0x10, 0x03, 'J', ' ', ' ', ' '});
        tell(0.2, monitors(false));
        acceptance.changes = {{at(0), std::nullopt, "phone"}};
    }

    static Bytes monitors(bool third) { return {0x01, 0x1A, 0, 0, 0, third ? std::uint8_t{1} : std::uint8_t{0}}; }

    void tell(double time, Bytes bytes) { evidence.sent.list.push_back({at(time), 0, std::move(bytes)}); }
    void ask(double time, Bytes bytes) { acceptance.accepted.push_back({at(time), "phone", std::move(bytes)}); }
    void done(double time, std::int32_t command, bool enabled, int track) {
        evidence.record.wishes.push_back({at(time), command, enabled, track});
    }

    template <typename Check>
    std::vector<std::string> run(Check check) {
        acceptance.numbers.assign(acceptance.accepted.size(), 0);
        const ShownTracks shown(evidence.sent, evidence.record, evidence.jobs.runs);
        return check(evidence, shown, acceptance, requestsIn(acceptance));
    }
    std::vector<std::string> tracks() { return run(checkTracksOfWishes); }
    std::vector<std::string> toggles() { return run(checkToggles); }

    const Bytes muteBoth{0x01, 0x21, 0x01, 0x02, 0x00, 0x09, 0x00, 0x0A};
    const Bytes toggle3{0x01, 0x0E, 0x03};

    Evidence evidence;
    Acceptance acceptance;
};

TEST_F(Wishes, ForAGroupComeToTheTracksOfItsRows) {
    ask(1, muteBoth);
    done(1.1, mute, true, 10);
    done(1.1, mute, true, 11);
    EXPECT_THAT(tracks(), IsEmpty());
    done(1.2, mute, true, 9);
    EXPECT_THAT(tracks(), SizeIs(1));
}

TEST_F(Wishes, AreForWhatWasAskedFor) {
    ask(1, muteBoth);
    done(1.1, solo, true, 10);
    done(1.1, mute, false, 10);
    done(0.9, mute, true, 10);
    EXPECT_THAT(tracks(), SizeIs(3));
}

TEST_F(Wishes, ForAMonitorComeToTheTrackOfTheStrip) {
    ask(1, toggle3);
    done(1.1, monitor, true, 10);
    EXPECT_THAT(tracks(), IsEmpty());
    evidence.record.wishes[0].track = 11; // the banks have moved meanwhile
    EXPECT_THAT(tracks(), SizeIs(1));
}

TEST_F(Wishes, MayComeToATrackThatHasTheNameOfOneThatIsGone) {
    ask(1, toggle3);
    evidence.record.states.push_back({at(2), trackCalled("J", 12)});
    done(2.5, monitor, true, 12);
    EXPECT_THAT(tracks(), SizeIs(1));
    evidence.record.lists.push_back({at(2), {1, 2, 3, 12}});
    EXPECT_THAT(tracks(), IsEmpty());
}

TEST_F(Wishes, ToSwitchOverMeanWhatWasShown) {
    ask(1, toggle3);
    done(1.1, monitor, true, 10);
    EXPECT_THAT(toggles(), IsEmpty());
    evidence.record.wishes[0].enabled = false; // the host's user had switched it on
    EXPECT_THAT(toggles(), SizeIs(1));
    tell(0.9, monitors(true));
    EXPECT_THAT(toggles(), IsEmpty());
}

} // namespace
} // namespace lumbrine::simulation
