// The display text for the value of a fader or a pan.
#pragma once

#include "base/fader_value.h"
#include "simulator/short_name.h"

namespace lumbrine {

DisplayText faderText(FaderValue position); // in dB: "-oo ", "-12 ", "-3.5", "+6.0"
DisplayText panText(double pan);            // "<100", "<C> ", "30> "

} // namespace lumbrine
