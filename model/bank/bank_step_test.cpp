// The choice of the next press on the way to an offset.
#include "model/bank/bank_step.h"

#include <cstdlib>
#include <utility>
#include <vector>

namespace lumbrine {
namespace {

using testing::ElementsAre;
using testing::Pair;

constexpr int channelBack = bank_port::channelBack;
constexpr int bankBack = bank_port::bankBack;
constexpr int channelForward = bank_port::channelForward;
constexpr int bankForward = bank_port::bankForward;

// Ports and predicted offsets.
std::vector<std::pair<int, int>> way(int from, int to, BankLayout layout) {
    std::vector<std::pair<int, int>> steps;
    while (from != to && steps.size() < 1000) {
        const BankStep step = nextBankStep(from, to, layout);
        steps.emplace_back(step.port, step.predicted);
        from = step.predicted;
    }
    return steps;
}

TEST(BankStep, GoesByBanksAndThenByChannels) {
    EXPECT_THAT(way(0, 12, {.tracks = 20, .width = 8}),
                ElementsAre(Pair(bankForward, 8), Pair(channelForward, 9), Pair(channelForward, 10),
                            Pair(channelForward, 11), Pair(channelForward, 12)));
}

TEST(BankStep, GoesBackToTheMultipleBelowFirst) {
    EXPECT_THAT(way(12, 0, {.tracks = 20, .width = 8}), ElementsAre(Pair(bankBack, 8), Pair(bankBack, 0)));
}

TEST(BankStep, GoesByChannelsWhereABankWouldLeadTooFar) {
    EXPECT_THAT(way(12, 10, {.tracks = 20, .width = 8}), ElementsAre(Pair(channelBack, 11), Pair(channelBack, 10)));
    EXPECT_THAT(way(5, 7, {.tracks = 20, .width = 8}), ElementsAre(Pair(channelForward, 6), Pair(channelForward, 7)));
}

TEST(BankStep, ReachesTheNextMultipleByABankFromAnywhereBelow) {
    EXPECT_THAT(way(7, 8, {.tracks = 20, .width = 8}), ElementsAre(Pair(bankForward, 8)));
    EXPECT_THAT(way(9, 8, {.tracks = 20, .width = 8}), ElementsAre(Pair(bankBack, 8)));
}

TEST(BankStep, TakesTheWidthOfTwoSurfaces) {
    EXPECT_THAT(
        way(0, 34, {.tracks = 50, .width = 16}),
        ElementsAre(Pair(bankForward, 16), Pair(bankForward, 32), Pair(channelForward, 33), Pair(channelForward, 34)));
}

TEST(BankStep, ComesBackFromBeyondTheLastFullWindow) {
    EXPECT_THAT(way(16, 12, {.tracks = 20, .width = 8}), ElementsAre(Pair(channelBack, 15), Pair(channelBack, 14),
                                                                     Pair(channelBack, 13), Pair(channelBack, 12)));
}

TEST(BankStep, LeadsFromEverywhereToEverywhereInFewPresses) {
    for (const int width : {8, 16})
        for (int tracks = width; tracks <= 60; ++tracks) {
            const BankLayout layout{.tracks = tracks, .width = width};
            for (int from = 0; from <= layout.maxOffset(); ++from)
                for (int to = 0; to <= layout.maxOffset(); ++to) {
                    const auto steps = way(from, to, layout);
                    ASSERT_LE(static_cast<int>(steps.size()), std::abs(to - from) / width + width);
                    ASSERT_EQ(steps.empty() ? from : steps.back().second, to);
                    for (const auto& [port, predicted] : steps)
                        ASSERT_TRUE(predicted >= 0 && predicted <= layout.maxOffset());
                }
        }
}

TEST(BankLayout, EndsWhereTheLastStripShowsTheLastTrack) {
    EXPECT_EQ((BankLayout{.tracks = 20, .width = 8}.maxOffset()), 12);
    EXPECT_EQ((BankLayout{.tracks = 8, .width = 8}.maxOffset()), 0);
    EXPECT_EQ((BankLayout{.tracks = 3, .width = 16}.maxOffset()), 0);
    EXPECT_EQ(BankLayout{}.maxOffset(), 0);
}

} // namespace
} // namespace lumbrine
