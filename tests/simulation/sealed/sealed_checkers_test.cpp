// A session of sealing clients keeps every promise; a receiver that lets everybody in, clients that do not seal, and a
// fault planted in what a session left behind are found.
#include "tests/simulation/sealed/sealed_checkers.h"
#include "tests/simulation/sealed/sealed_session.h"

#include <algorithm>
#include <functional>

namespace lumbrine::simulation {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

SealedScenario onePhone() {
    SealedScenario scenario = sealedScenarioOf(5);
    scenario.phones = 1;
    scenario.phonesMove = scenario.phonesRestart = scenario.keyIsTakenAway = false;
    return scenario;
}

TEST(SealedCheckers, FindWhatAReceiverDoesThatLetsEverybodyIn) {
    Violations found;
    for (int session = 0; session < 4; ++session) { // whether a fader ends elsewhere is chance
        SealedScenario scenario = onePhone();
        scenario.seed += static_cast<std::uint64_t>(session);
        scenario.onlyPaired = false;
        const Violations inSession = checkSealed(runSealedSession(scenario));
        found.insert(found.end(), inSession.begin(), inSession.end());
    }
    EXPECT_THAT(found, Contains(HasSubstr("presses: no phone made this press")));
    EXPECT_THAT(found, Contains(HasSubstr("the finger left it at")));
    EXPECT_THAT(found, Contains(HasSubstr("answers: not sealed")));
    EXPECT_THAT(found, Contains(HasSubstr("silence: after the phones")));
}

class SealedFaults : public testing::Test {
protected:
    SealedFaults() { EXPECT_THAT(checkSealed(evidence), IsEmpty()); }

    // What the host got first of that kind, a pair of packets, comes once more, before the last fingers.
    void repeat(const std::function<bool(const Bytes& first, const Bytes& second)>& isWanted) {
        auto& packets = evidence.surfaces.front();
        const auto found =
            std::ranges::adjacent_find(packets, [&](const ReceivedPacket& one, const ReceivedPacket& next) {
                return one.at > evidence.begun && isWanted(one.bytes, next.bytes);
            });
        ASSERT_NE(found, packets.end());
        const TimePoint at = found->at + seconds(1.05);
        const std::vector<ReceivedPacket> again{{at, found->bytes}, {at, (found + 1)->bytes}};
        packets.insert(std::ranges::upper_bound(packets, at, {}, &ReceivedPacket::at), again.begin(), again.end());
    }

    SealedEvidence evidence = runSealedSession(onePhone());
};

TEST_F(SealedFaults, APressThatHappensTwiceIsFound) {
    repeat([](const Bytes& zone, const Bytes& port) {
        constexpr std::uint8_t muteDown = 0x42;
        return zone[1] == 0x0F && zone[2] < 8 && port == Bytes{0xB0, 0x2F, muteDown};
    });
    EXPECT_THAT(checkSealedPresses(evidence), Contains(HasSubstr("no phone made this press")));
}

TEST_F(SealedFaults, APressLongAfterItWasMadeIsFound) {
    const auto isMute = [](const MadeDatagram& made) { return made.bytes.size() == 19 && made.bytes[1] == 0x04; };
    for (MadeDatagram& made : evidence.made)
        if (isMute(made)) made.at -= seconds(6);
    EXPECT_THAT(checkSealedPresses(evidence), Contains(HasSubstr("no phone made this press")));
}

TEST_F(SealedFaults, AFaderThatGoesBackIsFound) {
    repeat([](const Bytes& high, const Bytes& low) { return high[1] < 8 && low[1] == high[1] + 0x20; });
    EXPECT_THAT(checkSealedFaders(evidence), Contains(HasSubstr("goes back")));
}

TEST_F(SealedFaults, AnAnswerToSomebodyElseIsFound) {
    evidence.sent.peers.emplace_back("::ffff:192.168.1.66:1000");
    SentDatagram answer = evidence.sent.list.back();
    answer.peer = evidence.sent.peers.size() - 1;
    evidence.sent.list.push_back(answer);
    EXPECT_THAT(checkSealedAnswers(evidence), Contains(HasSubstr("to somebody who has not said hello")));
}

TEST_F(SealedFaults, AnAnswerAfterThePhonesIsFound) {
    evidence.sent.list.back().at = evidence.afterAll.last;
    EXPECT_THAT(checkSilence(evidence), Contains(HasSubstr("after the phones something was sent")));
}

TEST_F(SealedFaults, AFaderThatEndsElsewhereIsFound) {
    ++evidence.faders[5];
    EXPECT_THAT(checkSealedFaders(evidence), Contains(HasSubstr("fader 5 ends at")));
}

} // namespace
} // namespace lumbrine::simulation
