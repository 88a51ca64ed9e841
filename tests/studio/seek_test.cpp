// Seeking, against a simulated Pro Tools.
#include "tests/studio/seek_bench.h"
#include "tests/studio/shortest_way.h"

#include <chrono>
#include <numeric>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using enum Press;

// ---- From everywhere to everywhere

struct Setting {
    int surfaces;
    EndOfSession endOfSession;
    std::vector<int> offsets; // every one that leaves no strip blank
};

std::vector<int> firstOffsets(int count) {
    std::vector<int> offsets(static_cast<std::size_t>(count));
    std::iota(offsets.begin(), offsets.end(), 0);
    return offsets;
}

class SeekIn40Tracks : public testing::TestWithParam<Setting> {};

TEST_P(SeekIn40Tracks, LeadsFromAnyOffsetToAnyOtherByItsStepsAndCorrections) {
    SeekBench bench(40, {.surfaces = GetParam().surfaces, .endOfSession = GetParam().endOfSession});
    const auto expectToReach = [&bench](int target) {
        const int from = bench.hostOffset();
        ASSERT_TRUE(bench.reaches(target)) << target << " from " << from;
        ASSERT_TRUE(areStepsAndCorrections(bench.presses(), from, target, bench.proTools->options, 40));
    };
    const std::vector<int>& offsets = GetParam().offsets;
    for (std::size_t i = 0; i < offsets.size(); ++i)
        for (std::size_t j = i + 1; j < offsets.size(); ++j) {
            ASSERT_NO_FATAL_FAILURE(expectToReach(offsets[i]));
            ASSERT_NO_FATAL_FAILURE(expectToReach(offsets[j]));
        }
}

INSTANTIATE_TEST_SUITE_P(Offsets, SeekIn40Tracks,
                         testing::Values(Setting{1, EndOfSession::fill, firstOffsets(33)},
                                         Setting{2, EndOfSession::fill, firstOffsets(25)},
                                         Setting{1, EndOfSession::blank, firstOffsets(33)},
                                         Setting{2, EndOfSession::blank, firstOffsets(25)}));

TEST(FewestPresses, AreOneForEachBankAndOneForEachTrackThatIsLeft) {
    EXPECT_EQ(fewestPresses(0, 12, 8), 5); // one bank, four channels
    EXPECT_EQ(fewestPresses(12, 0, 8), 2); // to the multiple below, and a bank
    EXPECT_EQ(fewestPresses(5, 17, 8), 3); // 8, 16, 17
    EXPECT_EQ(fewestPresses(0, 7, 8), 7);  // a bank would lead past it
    EXPECT_EQ(fewestPresses(3, 19, 16), 4);
    EXPECT_EQ(fewestPresses(6, 6, 8), 0);
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

TEST(Seek, CorrectsWhatItsPressesDidNotDo) {
    // From 4 the bank button leads to 12, where 8 was expected.
    SeekStudio studio(40);
    EXPECT_THAT(studio.pressesTo(4), SizeIs(4));
    EXPECT_THAT(studio.pressesTo(8), ElementsAre(bankRight, bankLeft));
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
    int reached = 0;
    for (int i = 0; i < 50; ++i) {
        reached += bench.reaches(i * 13 % 33) ? 1 : 0;
        ASSERT_EQ(bench.knownOffset(), bench.hostOffset());
    }
    EXPECT_GE(bench.proTools->snapshot().droppedPresses, 20u);
    EXPECT_GE(reached, 48); // the others needed more than two corrections
}

TEST(Seek, PressesNoMoreThanItsStepsAndTwoCorrectionsThoughPressesAreLost) {
    SeekBench bench(40, {.bankRightAligns = true, .dropOnePressIn = 10});
    std::uint64_t dropped = 0;
    for (int i = 0; i < 50; ++i) {
        const int from = bench.hostOffset();
        const int to = i * 13 % 33;
        bench.seek(to);
        ASSERT_TRUE(bench.ends());
        const auto presses = static_cast<int>(bench.presses().size());
        const std::uint64_t before = std::exchange(dropped, bench.proTools->snapshot().droppedPresses);
        const bool noneLost = dropped == before;
        if (noneLost) {
            EXPECT_EQ(presses, fewestPresses(from, to, 8));
            continue;
        }
        int longest = 0; // way that a correction has to go: the surfaces are somewhere between
        for (int offset = std::min(from, to); offset <= std::max(from, to); ++offset)
            longest = std::max(longest, fewestPresses(offset, to, 8));
        EXPECT_LE(presses, fewestPresses(from, to, 8) + 2 * longest) << "from " << from << " to " << to;
    }
    EXPECT_GE(dropped, 10u);
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
    EXPECT_LT(*taken, 3s);
    EXPECT_THAT(studio.presses(), SizeIs(3 * 4)); // and two corrections
    EXPECT_EQ(studio.shown().bankOffset, 0);
}

// Where the bank buttons lead elsewhere than to multiples of the width a seek may miss, but never without knowing it.
TEST(Seek, KnowsWhereItEndsWhateverTheBankButtonsDo) {
    SeekBench bench(40, {.bankLeftAligns = false});
    for (int i = 0; i < 50; ++i) {
        bench.seek(i * 13 % 33);
        ASSERT_TRUE(bench.ends());
        bench.bench.run(100ms);
        ASSERT_EQ(bench.knownOffset(), bench.hostOffset());
    }
}

class SeekOnAHostWithLatency : public testing::TestWithParam<int> {};

TEST_P(SeekOnAHostWithLatency, EndsWhereItWasAskedTo) {
    SeekBench bench(40, {.latency = std::chrono::milliseconds(GetParam())});
    for (const int target : {1, 0, 8, 9, 32, 3, 11, 24, 7, 6, 0})
        ASSERT_TRUE(bench.reaches(target)) << target;
}

INSTANTIATE_TEST_SUITE_P(Milliseconds, SeekOnAHostWithLatency, testing::Values(0, 1, 50, 100, 200, 221));

// It is looked at too early then, and pressed too often; that it has come elsewhere shows as soon as it has.
TEST(Seek, IsKnownToMissOnAHostThatTakes300Milliseconds) {
    SeekBench bench(40, {.latency = 300ms});
    for (const int target : {1, 0, 8, 9, 32, 3, 11, 24, 7, 6, 0}) {
        bench.seek(target);
        ASSERT_TRUE(bench.ends());
        bench.bench.run(1s);
        ASSERT_EQ(bench.knownOffset(), bench.hostOffset());
    }
}

} // namespace
} // namespace lumbrine
