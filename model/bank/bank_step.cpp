#include "model/bank/bank_step.h"

#include <algorithm>

namespace lumbrine {

namespace {

// A bank key leads to the next multiple of the width, wherever the surfaces are.
BankStep unclampedStep(int current, int target, BankLayout layout) {
    const int width = layout.width;
    if (current < target) {
        const int nextBank = (current / width + 1) * width;
        const int lastBank = (layout.tracks - 1) / width * width;
        if (nextBank <= target && nextBank <= lastBank) return {bank_port::bankForward, nextBank};
        return {bank_port::channelForward, current + 1};
    }
    const int prevBank = current % width == 0 ? current - width : current / width * width;
    if (target <= prevBank && prevBank >= 0) return {bank_port::bankBack, prevBank};
    return {bank_port::channelBack, current - 1};
}

} // namespace

int BankLayout::maxOffset() const {
    return std::max(tracks - width, 0);
}

BankStep nextBankStep(int current, int target, BankLayout layout) {
    BankStep step = unclampedStep(current, target, layout);
    step.predicted = std::clamp(step.predicted, 0, std::max(layout.maxOffset(), current));
    return step;
}

} // namespace lumbrine
