#include "app/signal_colours.h"

namespace lumbrine {

std::optional<RGBColor> colourOf(LogMarker marker, const SignalColours& signals) {
    switch (marker) {
    case LogMarker::success:
        return signals.good;
    case LogMarker::failure:
        return signals.bad;
    case LogMarker::warning:
        return signals.warning;
    case LogMarker::started:
    case LogMarker::longJob:
        return signals.accent;
    case LogMarker::received:
        return signals.received;
    case LogMarker::none:
        break;
    }
    return std::nullopt;
}

std::optional<RGBColor> colourOf(CheckState state, const SignalColours& signals) {
    switch (state) {
    case CheckState::fine:
        return signals.good;
    case CheckState::wrong:
        return signals.bad;
    case CheckState::waiting:
        return signals.warning;
    case CheckState::unknown:
        break;
    }
    return std::nullopt;
}

} // namespace lumbrine
