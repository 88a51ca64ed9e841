// The rules of banking: the possible offsets of a bank, and the effect of the bank and channel buttons. Offsets count
// the shown tracks from 0. Pure functions.
#pragma once

#include "simulator/simulator_options.h"

namespace lumbrine {

// The buttons in the order of their HUI ports.
enum class BankButton { channelLeft, bankLeft, channelRight, bankRight };

// The largest offset of a bank of `width` strips; 0 when all tracks fit.
int lastBankOffset(int tracks, int width, EndOfSession endOfSession);

// The offset after one press, clamped to 0 and the largest offset.
int bankOffsetAfter(BankButton button, int offset, int tracks, int width, const SimulatorOptions& options);

} // namespace lumbrine
