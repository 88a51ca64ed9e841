#include "app/signal_colours.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace lumbrine {
namespace {

double luminance(RGBColor colour) {
    const auto part = [](int value) {
        const double share = value / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(colour.red()) + 0.7152 * part(colour.green()) + 0.0722 * part(colour.blue());
}

double contrast(RGBColor a, RGBColor b) {
    const double brighter = std::max(luminance(a), luminance(b)) + 0.05;
    return brighter / (std::min(luminance(a), luminance(b)) + 0.05);
}

void expectReadable(const SignalColours& signals, const std::vector<RGBColor>& grounds) {
    for (const RGBColor ground : grounds)
        for (const RGBColor colour :
             {signals.good, signals.bad, signals.warning, signals.accent, signals.received, signals.quiet})
            EXPECT_GE(contrast(colour, ground), 4.5) << std::hex << int{colour.red()} << " " << int{colour.green()}
                                                     << " " << int{colour.blue()} << " on " << int{ground.red()};
}

TEST(SignalColours, CanBeReadOnTheTextAndWindowBackgroundsOfBothAppearances) {
    expectReadable(lightSignals, {0xFFFFFF, 0xECECEC});
    expectReadable(darkSignals, {0x1E1E1E, 0x323232});
}

TEST(SignalColours, MarkersHaveTheColoursOfTheirMeaning) {
    EXPECT_EQ(colourOf(LogMarker::success, lightSignals), lightSignals.good);
    EXPECT_EQ(colourOf(LogMarker::failure, lightSignals), lightSignals.bad);
    EXPECT_EQ(colourOf(LogMarker::warning, darkSignals), darkSignals.warning);
    EXPECT_EQ(colourOf(LogMarker::started, darkSignals), darkSignals.accent);
    EXPECT_EQ(colourOf(LogMarker::longJob, darkSignals), darkSignals.accent);
    EXPECT_EQ(colourOf(LogMarker::received, darkSignals), darkSignals.received);
    EXPECT_EQ(colourOf(LogMarker::none, darkSignals), std::nullopt);
}

TEST(SignalColours, ChecksHaveTheColoursOfTheirStates) {
    EXPECT_EQ(colourOf(CheckState::fine, lightSignals), lightSignals.good);
    EXPECT_EQ(colourOf(CheckState::wrong, lightSignals), lightSignals.bad);
    EXPECT_EQ(colourOf(CheckState::waiting, lightSignals), lightSignals.warning);
    EXPECT_EQ(colourOf(CheckState::unknown, lightSignals), std::nullopt);
}

} // namespace
} // namespace lumbrine
