#include "simulator/bank_rules.h"

#include <algorithm>

namespace lumbrine {

int lastBankOffset(int tracks, int width, EndOfSession endOfSession) {
    if (tracks <= width) return 0;
    return endOfSession == EndOfSession::fill ? tracks - width : (tracks - 1) / width * width;
}

int bankOffsetAfter(BankButton button, int offset, int tracks, int width, const SimulatorOptions& options) {
    const int bankBegin = offset / width * width;
    int next = offset;
    switch (button) {
    case BankButton::channelLeft:
        next = offset - 1;
        break;
    case BankButton::bankLeft:
        next = options.bankLeftAligns && offset != bankBegin ? bankBegin : offset - width;
        break;
    case BankButton::channelRight:
        next = offset + 1;
        break;
    case BankButton::bankRight:
        next = (options.bankRightAligns ? bankBegin : offset) + width;
        break;
    }
    return std::clamp(next, 0, lastBankOffset(tracks, width, options.endOfSession));
}

} // namespace lumbrine
