// Seeking, against a simulated Pro Tools.
#include "tests/studio/seek_bench.h"
#include "tests/studio/shortest_way.h"

#include <chrono>
#include <tuple>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using enum Press;

// ---- From everywhere to everywhere

using Host = std::tuple<int, int, EndOfSession, bool, bool>; // surfaces, tracks, end, bank left and right align

SimulatorOptions optionsOf(const Host& host) {
    const auto [surfaces, tracks, endOfSession, leftAligns, rightAligns] = host;
    return {.surfaces = surfaces,
            .endOfSession = endOfSession,
            .bankLeftAligns = leftAligns,
            .bankRightAligns = rightAligns};
}

class SeekOnEveryHost : public testing::TestWithParam<Host> {
protected:
    explicit SeekOnEveryHost(Duration latency = 20ms)
        : bench(tracks, [latency] {
              SimulatorOptions options = optionsOf(GetParam());
              options.latency = latency;
              return options;
          }()) {}

    const int tracks = std::get<1>(GetParam());
    const int width = stripsPerSurface * std::get<0>(GetParam());
    const int last = tracks - width; // offset that leaves no strip blank
    SeekBench bench;
};

TEST_P(SeekOnEveryHost, ArrivesFromAnywhereAnywhere) {
    for (int from = 0; from <= last; from += 5)
        for (int to = from + 1; to <= last; to += 2) {
            ASSERT_TRUE(bench.reaches(from));
            ASSERT_TRUE(bench.reaches(to)) << to << " from " << from;
        }
}

TEST_P(SeekOnEveryHost, TakesTheFewestPressesOnceItHasSeenWhereTheBankButtonsLead) {
    const BankButtons buttons{.width = width,
                              .leftAligns = bench.proTools->options.bankLeftAligns,
                              .rightAligns = bench.proTools->options.bankRightAligns};
    for (const int target : {1, width + 1, 1})
        bench.reaches(target);
    bench.presses();
    for (int from = 0; from <= last; from += 5)
        for (int to = last; to >= 0; to -= 3) {
            ASSERT_TRUE(bench.reaches(from));
            bench.presses();
            ASSERT_TRUE(bench.reaches(to));
            ASSERT_EQ(static_cast<int>(bench.presses().size()), fewestPresses(from, to, buttons))
                << to << " from " << from;
        }
}

const auto everyHost =
    testing::Combine(testing::Values(1, 2), testing::Values(35, 48),
                     testing::Values(EndOfSession::fill, EndOfSession::blank), testing::Bool(), testing::Bool());

INSTANTIATE_TEST_SUITE_P(Hosts, SeekOnEveryHost, everyHost);

class SeekOnEverySlowHost : public SeekOnEveryHost {
protected:
    SeekOnEverySlowHost() : SeekOnEveryHost(1s) {}
};

TEST_P(SeekOnEverySlowHost, Arrives) {
    for (const int target : {1, 0, 8, 9, 24, 3, 11, 23, 7, 6, 0}) {
        const int within = std::min(target, last);
        ASSERT_TRUE(bench.reaches(within)) << within;
    }
}

INSTANTIATE_TEST_SUITE_P(Hosts, SeekOnEverySlowHost, everyHost);

TEST(FewestPresses, AreOneForEachBankAndOneForEachTrackThatIsLeft) {
    EXPECT_EQ(fewestPresses(0, 12, {}), 5); // one bank, four channels
    EXPECT_EQ(fewestPresses(12, 0, {}), 2); // to the multiple below, and a bank
    EXPECT_EQ(fewestPresses(5, 17, {}), 3); // 8, 16, 17
    EXPECT_EQ(fewestPresses(0, 7, {}), 7);  // a bank would lead past it
    EXPECT_EQ(fewestPresses(3, 19, {.width = 16}), 4);
    EXPECT_EQ(fewestPresses(6, 6, {}), 0);
    EXPECT_EQ(fewestPresses(5, 17, {.rightAligns = false}), 5); // 13, four channels
    EXPECT_EQ(fewestPresses(12, 0, {.leftAligns = false}), 2);  // 4, and to the beginning
}

// ---- Presses

// A studio that has just mapped its session and shows its beginning.
class SeekStudio : public Studio {
public:
    explicit SeekStudio(int tracks, const SimulatorOptions& options = {}) : Studio(numberedTracks(tracks), options) {
        EXPECT_TRUE(mapSession(120s));
        run(100ms);
        presses();
    }

    void seek(int target) { parts().seekWorker.seekBank(target); }

    std::vector<Press> pressesTo(int target) {
        seek(target);
        run(150ms); // a poll may come to its end
        EXPECT_TRUE(untilQuiet(10s));
        EXPECT_EQ(hostOffset(), target);
        EXPECT_EQ(shown().bankOffset, target);
        return presses();
    }
};

TEST(Seek, PressesBanksAndThenChannels) {
    SeekStudio studio(20);
    EXPECT_THAT(studio.pressesTo(12), ElementsAre(bankRight, channelRight, channelRight, channelRight, channelRight));
    EXPECT_THAT(studio.pressesTo(0), ElementsAre(bankLeft, bankLeft));
    EXPECT_THAT(studio.pressesTo(0), IsEmpty());
}

TEST(Seek, LearnsWhereABankButtonLeads) {
    // From 4 it leads to 12, where 8 was expected.
    SeekStudio studio(40);
    EXPECT_THAT(studio.pressesTo(4), SizeIs(4));
    EXPECT_THAT(studio.pressesTo(8), ElementsAre(bankRight, bankLeft));
    EXPECT_THAT(studio.pressesTo(4), SizeIs(4));
    EXPECT_THAT(studio.pressesTo(8), SizeIs(4));
    EXPECT_THAT(studio.pressesTo(17), ElementsAre(bankRight, channelRight));
}

// ---- Many requests

class StormOfTargets : public testing::TestWithParam<std::pair<int, int>> {};

TEST_P(StormOfTargets, EndsAtTheLast) {
    const auto [surfaces, latency] = GetParam();
    SeekStudio studio(200, {.surfaces = surfaces, .latency = std::chrono::milliseconds(latency)});
    for (int i = 0; i < 200; ++i) {
        studio.seek(i * 7919 % 184);
        studio.run(10ms);
    }
    studio.seek(77);
    studio.presses();
    ASSERT_TRUE(studio.untilQuiet(20s));
    EXPECT_EQ(studio.hostOffset(), 77);
    EXPECT_EQ(studio.shown().bankOffset, 77);
    // From anywhere to there once, though the targets came faster than presses can: nothing has queued up.
    EXPECT_LT(studio.presses().size(), 40u);
}

INSTANTIATE_TEST_SUITE_P(SurfacesAndMilliseconds, StormOfTargets,
                         testing::Values(std::pair{1, 20}, std::pair{1, 200}, std::pair{2, 0}, std::pair{2, 100}));

TEST(Seek, TurnsRoundAtOnceForANewTarget) {
    SeekStudio studio(200);
    studio.seek(160);
    studio.run(1s);
    studio.seek(0);
    ASSERT_TRUE(studio.untilQuiet(20s));
    EXPECT_EQ(studio.hostOffset(), 0);
    EXPECT_THAT(studio.presses(), SizeIs(testing::Lt(20u))); // 160 is 20 banks away
}

TEST(Seek, IsWhatTheNavigationButtonsDo) {
    SeekStudio studio(40);
    for (const int kind : {3, 3, 2, 0, 1}) {
        studio.bench.model->bankMove(kind);
        studio.run(150ms); // a poll may come to its end
        ASSERT_TRUE(studio.untilQuiet(10s));
    }
    EXPECT_EQ(studio.hostOffset(), 8);
    // From 17 to 16 the shorter way is a bank.
    EXPECT_THAT(studio.presses(), ElementsAre(bankRight, bankRight, channelRight, bankLeft, bankLeft));
}

// ---- Trouble

TEST(Seek, GetsThereThoughOnePressInTenIsLost) {
    SeekBench bench(40, {.dropOnePressIn = 10});
    for (int i = 0; i < 500; ++i)
        ASSERT_TRUE(bench.reaches(i * 13 % 33)) << i;
    EXPECT_GE(bench.proTools->snapshot().droppedPresses, 200u);
}

TEST(Seek, CorrectsWhatTheUserDidMeanwhile) {
    SeekStudio studio(40);
    studio.seek(30);
    studio.run(300ms);
    studio.proTools->bank(BankButton::bankLeft);
    ASSERT_TRUE(studio.untilQuiet(10s));
    EXPECT_EQ(studio.hostOffset(), 30);
    EXPECT_EQ(studio.shown().bankOffset, 30);
}

TEST(Seek, LeavesTheViewToAUserWhoInsists) {
    SeekStudio studio(40);
    studio.seek(30);
    while (!studio.state().quiet()) {
        studio.run(60ms);
        studio.proTools->scrollTo(3);
    }
    studio.run(3s); // the automation modes are asked for, which takes names off the displays for a moment
    EXPECT_EQ(studio.hostOffset(), 3);
    EXPECT_EQ(studio.shown().bankOffset, 3);
}

TEST(Seek, GivesUpOnAHostThatStandsStill) {
    SeekStudio studio(40);
    studio.proTools->stick(60s);
    studio.seek(32);
    const auto taken = studio.untilQuiet(10s);
    ASSERT_TRUE(taken);
    EXPECT_LT(*taken, 4s);
    EXPECT_THAT(studio.presses(), SizeIs(4 * 4)); // and three corrections
    EXPECT_EQ(studio.shown().bankOffset, 0);
}

class SeekOnAHostWithLatency : public testing::TestWithParam<int> {};

TEST_P(SeekOnAHostWithLatency, EndsWhereItWasAskedTo) {
    SeekBench bench(40, {.latency = std::chrono::milliseconds(GetParam())});
    for (const int target : {1, 0, 8, 9, 32, 3, 11, 24, 7, 6, 0})
        ASSERT_TRUE(bench.reaches(target)) << target;
}

INSTANTIATE_TEST_SUITE_P(Milliseconds, SeekOnAHostWithLatency,
                         testing::Values(0, 1, 50, 100, 200, 221, 300, 500, 1000));

} // namespace
} // namespace lumbrine
