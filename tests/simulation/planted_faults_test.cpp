// A quiet session keeps every promise; with a fault planted in what it left behind it does not.
#include "tests/simulation/checkers.h"
#include "tests/simulation/world.h"

#include <algorithm>

namespace lumbrine::simulation {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

Scenario quietScenario() {
    Scenario scenario;
    scenario.switches.switchOn("all");
    scenario.namesDiffer = true;
    return scenario;
}

class PlantedFaults : public testing::Test {
protected:
    // A phone that plays a fader, repeats no release and sets a mode.
    PlantedFaults() {
        World world(scenario);
        world.runtime.runFor(seconds(20)); // until the first scan has ended
        world.phone().send(remote::faderTouchCommand(strip));
        world.phone().move(strip, FaderValue::ofRaw(8000));
        world.runtime.runFor(seconds(0.5));
        world.phone().send(remote::faderReleaseCommand(strip));
        world.phone().send(remote::setAutoModeCommand(strip, remote::AutoModeKey::read));
        world.runtime.runFor(seconds(3));
        evidence = world.collect();
    }

    Violations violationsOf(const std::string& checker) {
        Violations found = checkAll(scenario, evidence);
        std::erase_if(found, [&](const std::string& violation) { return !violation.starts_with(checker + ": "); });
        return found;
    }

    // From what the host got first of that kind.
    void lose(const Bytes& first, const Bytes& second) {
        auto& packets = evidence.surfaces.front();
        const auto isPair = [&](const ReceivedPacket& one, const ReceivedPacket& other) {
            return one.bytes == first && other.bytes == second;
        };
        const auto found = std::ranges::adjacent_find(packets, isPair);
        ASSERT_NE(found, packets.end());
        packets.erase(found, found + 2);
    }

    const Scenario scenario = quietScenario();
    const Strip strip = *Strip::of(3);
    Evidence evidence;
};

TEST_F(PlantedFaults, ALostReleaseIsFound) {
    EXPECT_THAT(violationsOf("hands"), IsEmpty());
    lose({0xB0, 0x0F, 0x03}, {0xB0, 0x2F, 0x00});
    EXPECT_THAT(violationsOf("hands"), Contains(HasSubstr("after its release")));
}

TEST_F(PlantedFaults, ALostModeIsFound) {
    EXPECT_THAT(violationsOf("modes-in-time"), IsEmpty());
    lose({0xB0, 0x0F, 0x18}, {0xB0, 0x2F, 0x42});
    EXPECT_THAT(violationsOf("modes-in-time"), Contains(HasSubstr("never set")));
}

TEST_F(PlantedFaults, ALostPongIsFound) {
    EXPECT_THAT(violationsOf("answers"), IsEmpty());
    std::erase_if(evidence.sent.list, [](const SentDatagram& sent) { return sent.type() == 0x7F; });
    EXPECT_THAT(violationsOf("answers"), Contains(HasSubstr("no pong")));
}

TEST_F(PlantedFaults, AnActOnAnotherTrackIsFound) {
    EXPECT_THAT(violationsOf("tracks-of-acts"), IsEmpty());
    auto& acts = evidence.record.acts;
    const auto move = std::ranges::find(acts, HostAct::Kind::move, &HostAct::kind);
    ASSERT_NE(move, acts.end());
    move->track += 8;
    const Duration moment = seconds(0.001); // the bank button was on its way
    evidence.record.banks.push_back({move->sent + moment, 8, move->sent - moment});
    EXPECT_THAT(violationsOf("tracks-of-acts"), Contains(HasSubstr("move 8000")));
}

TEST_F(PlantedFaults, ARowWithAnotherTracksFaderIsFound) {
    constexpr std::uint8_t trackRow = 0x1B;
    EXPECT_THAT(violationsOf("tellings"), IsEmpty());
    const auto row = std::ranges::find(evidence.sent.list, trackRow, &SentDatagram::type);
    ASSERT_NE(row, evidence.sent.list.end());
    row->bytes[6] ^= 32;
    EXPECT_THAT(violationsOf("tellings"), Contains(HasSubstr("the fader")));
}

TEST_F(PlantedFaults, AValueThatIsNoLongerTheHostsIsFound) {
    EXPECT_THAT(violationsOf("quiet-moments"), IsEmpty());
    const TimePoint changed = evidence.begun + seconds(12);
    SimulatedTrack track = evidence.record.states.front().track;
    track.fader = FaderValue::ofRaw(16000);
    const auto next = std::ranges::upper_bound(evidence.record.states, changed, {}, &TrackState::at);
    evidence.record.states.insert(next, {changed, track});
    EXPECT_THAT(violationsOf("quiet-moments"), Contains(HasSubstr("the fader 32 instead of 16000 of strip 0")));
}

} // namespace
} // namespace lumbrine::simulation
