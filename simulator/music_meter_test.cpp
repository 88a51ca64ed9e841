#include "simulator/music_meter.h"

#include <set>

namespace lumbrine {
namespace {

using Instrument = SimulatedTrack::MeterProgram::Kind;

TEST(MusicMeter, LightsEachSegmentFromItsThreshold) {
    EXPECT_EQ(meterLevelOf(-60.1), 0);
    EXPECT_EQ(meterLevelOf(-60), 1);
    EXPECT_EQ(meterLevelOf(-50), 2);
    EXPECT_EQ(meterLevelOf(-40), 3);
    EXPECT_EQ(meterLevelOf(-30), 4);
    EXPECT_EQ(meterLevelOf(-20), 5);
    EXPECT_EQ(meterLevelOf(-14), 6);
    EXPECT_EQ(meterLevelOf(-10), 7);
    EXPECT_EQ(meterLevelOf(-8), 8);
    EXPECT_EQ(meterLevelOf(-6), 9);
    EXPECT_EQ(meterLevelOf(-4), 10);
    EXPECT_EQ(meterLevelOf(-2), 11);
    EXPECT_EQ(meterLevelOf(-0.1), 11);
    EXPECT_EQ(meterLevelOf(0), 12);
}

TEST(MusicMeter, ShowsASteadyToneOnTheLeftAndInStereoOnBothSides) {
    EXPECT_EQ(meterLevels({Instrument::tone, -20, 1}, false, seconds(3)), (MeterLevels{5, 0}));
    EXPECT_EQ(meterLevels({Instrument::tone, -20, 1}, true, seconds(3)), (MeterLevels{5, 5}));
    EXPECT_EQ(meterLevels({Instrument::silent, 0, 1}, true, seconds(3)), (MeterLevels{0, 0}));
}

TEST(MusicMeter, RisesAndFallsAsMusicDoes) {
    for (const Instrument kind : {Instrument::drum, Instrument::bass, Instrument::melody, Instrument::pad})
        for (std::uint32_t seed = 1; seed < 20; ++seed) {
            std::set<int> levels;
            for (int frame = 0; frame < 60 * 25; ++frame)
                levels.insert(meterLevels({kind, -6, seed}, true, seconds(frame / 25.0))[0]);
            EXPECT_GE(levels.size(), 2u) << "kind " << static_cast<int>(kind) << " seed " << seed;
            EXPECT_LE(*levels.rbegin(), 9) << "louder than its peak";
            EXPECT_GE(*levels.rbegin(), 6) << "never near its peak";
        }
}

TEST(MusicMeter, IsTheSameAtTheSamePlace) {
    const SimulatedTrack::MeterProgram program{Instrument::melody, -6, 42};
    for (int frame = 0; frame < 500; ++frame)
        EXPECT_EQ(meterLevels(program, true, seconds(frame / 25.0)), meterLevels(program, true, seconds(frame / 25.0)));
}

TEST(MusicMeter, DiffersFromOneSeedToTheNext) {
    int differences = 0;
    for (int frame = 0; frame < 500; ++frame)
        differences += meterLevels({Instrument::drum, -6, 1}, false, seconds(frame / 25.0)) !=
                       meterLevels({Instrument::drum, -6, 2}, false, seconds(frame / 25.0));
    EXPECT_GT(differences, 50);
}

} // namespace
} // namespace lumbrine
