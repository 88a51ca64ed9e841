// Where a bank may begin and where the bank and channel buttons lead: plain arithmetic on offsets into the shown
// tracks.
#pragma once

#include "simulator/simulator_options.h"

namespace lumbrine {

// In the order of their HUI ports.
enum class BankButton { channelLeft, bankLeft, channelRight, bankRight };

// The largest offset that a bank of `width` strips may have; 0 for a session that fits.
int lastBankOffset(int tracks, int width, EndOfSession endOfSession);

// The offset after one press, kept between 0 and the last one.
int bankOffsetAfter(BankButton button, int offset, int tracks, int width, const SimulatorOptions& options);

} // namespace lumbrine
