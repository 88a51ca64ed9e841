#include "model/bank/bank_step.h"

#include <algorithm>

namespace lumbrine {

namespace {

int offsetAfterBankKey(int port, int current, int width, bool aligns) {
    const int below = current / width * width;
    if (port == bank_port::bankForward) return (aligns ? below : current) + width;
    return aligns && current != below ? below : std::max(current - width, 0);
}

BankStep unclampedStep(int current, int target, BankLayout layout) {
    const int port = current < target ? bank_port::bankForward : bank_port::bankBack;
    const int next = offsetAfterBankKey(port, current, layout.width, layout.rule.of(port).value_or(true));
    const bool leadsPast = current < target ? next > target : next < target;
    return leadsPast ? nextChannelStep(current, target) : BankStep{port, next};
}

} // namespace

int BankLayout::maxOffset() const {
    return std::max(tracks - width, 0);
}

BankStep nextBankStep(int current, int target, BankLayout layout) {
    BankStep step = unclampedStep(current, target, layout);
    step.predicted = std::clamp(step.predicted, 0, std::max({layout.maxOffset(), current, target}));
    return step;
}

BankStep nextChannelStep(int current, int target) {
    if (current < target) return {bank_port::channelForward, current + 1};
    return {bank_port::channelBack, current - 1};
}

std::optional<bool> alignsBy(int port, int from, int to, BankLayout layout) {
    const int aligned = offsetAfterBankKey(port, from, layout.width, true);
    const int unaligned = offsetAfterBankKey(port, from, layout.width, false);
    const int filled = std::min(unaligned, std::max(layout.maxOffset(), from)); // where the last bank has no blanks
    if (aligned == unaligned || aligned == filled) return std::nullopt;
    if (to == aligned) return true;
    if (to == unaligned || to == filled) return false;
    return std::nullopt;
}

} // namespace lumbrine
