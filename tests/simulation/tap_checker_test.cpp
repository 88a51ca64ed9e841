// The checker of taps sees banks that were not moved, or one too many.
#include "tests/simulation/arrival_checker.h"
#include "tests/simulation/testing/wire_actions.h"

namespace lumbrine::simulation {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

// Forty tracks on eight strips, the bank at 8; the phone taps at 5 s, three times within 0.4 s.
class Taps : public testing::Test {
protected:
    static constexpr int bankLeft = 1, channelRight = 2, bankRight = 3;

    Taps() {
        evidence.jobs.ended = at(60);
        evidence.record.lists = {{at(0), {}}};
        for (int id = 1; id <= 40; ++id)
            evidence.record.lists[0].ids.push_back(id);
        evidence.record.banks = {{at(0.5), 8, at(0.4)}};
        for (const double time : {5.0, 5.2, 5.4})
            requests.bankMoves.push_back({at(time), bankRight});
    }

    void bank(double time, int offset) { evidence.record.banks.push_back({at(time), offset, at(time - 0.02)}); }
    std::vector<std::string> check() { return checkTaps(scenario, evidence, acceptance, requests); }

    Scenario scenario;
    Evidence evidence;
    Acceptance acceptance;
    Requests requests;
};

TEST_F(Taps, GoAsManyBanks) {
    bank(5.1, 16);
    bank(5.9, 32);
    EXPECT_THAT(check(), IsEmpty());
    evidence.record.banks.back().offset = 24;
    EXPECT_THAT(check(), SizeIs(1));
}

TEST_F(Taps, MayTakeASeekAndItsTime) {
    JobRun run;
    run.job = Job::seek;
    run.before = run.first = at(5);
    run.last = run.after = at(8);
    evidence.jobs.runs = {run};
    bank(7.9, 32);
    EXPECT_THAT(check(), IsEmpty());
    evidence.record.banks.back().at = at(9);
    EXPECT_THAT(check(), SizeIs(1));
}

TEST_F(Taps, EndAtTheLastBank) {
    requests.bankMoves.push_back({at(5.6), bankRight});
    bank(5.9, 32);
    EXPECT_THAT(check(), IsEmpty());
}

TEST_F(Taps, CountTracksAndAlignedBanksToo) {
    requests.bankMoves[0].button = channelRight;
    requests.bankMoves[1].button = bankLeft;
    requests.bankMoves.pop_back();
    bank(5.9, 8); // from 9 to the bank's own begin
    EXPECT_THAT(check(), IsEmpty());
    evidence.record.banks.back().offset = 1; // eight tracks back
    EXPECT_THAT(check(), IsEmpty());
    evidence.record.banks.back().offset = 0;
    EXPECT_THAT(check(), SizeIs(1));
}

TEST_F(Taps, BesideAUserOfTheHostLeadAnywhere) {
    bank(5.1, 16);
    evidence.record.banks.push_back({at(5.3), 3, std::nullopt});
    EXPECT_THAT(check(), IsEmpty());
}

} // namespace
} // namespace lumbrine::simulation
