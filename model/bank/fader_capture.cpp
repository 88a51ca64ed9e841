#include "model/bank/fader_capture.h"

#include <cassert>
#include <utility>

namespace lumbrine {

FaderCapture::FaderCapture(const Jobs& jobs, ReceiverState& state, const BankMap& bankMap, DisplayWatch& displays)
    : jobs(jobs), state(state), bankMap(bankMap), displays(displays) {}

void FaderCapture::faderShown(Strip strip) {
    assert(jobs.runtime.onMain());
    fresh.set(strip.slot());
    captureSoon();
}

void FaderCapture::allShown() {
    fresh.set();
    captureSoon();
}

void FaderCapture::captureNow() {
    jobs.runOnMain([this] {
        if (isSure()) capture();
    });
}

void FaderCapture::captureSoon() {
    if (std::exchange(looking, true)) return;
    jobs.onMainAfter(stillness, [this] {
        looking = false;
        if (isSure()) return capture();
        // With an unknown position, or a job under way, what changes that asks again.
        if (state.quiet() && state.published.bankOffset >= 0) captureSoon();
    });
}

bool FaderCapture::isSure() const {
    return displays.age() >= stillness && bankMap.isSure();
}

void FaderCapture::capture() {
    for (std::size_t slot = 0; slot < state.published.shownStrips().size(); ++slot) {
        const auto track = state.published.trackOn(slot);
        if (!fresh.test(slot) || !track) continue;
        std::optional<double>& fader = state.published.session.tracks[*track].fader;
        const double value = state.published.strips[slot].fader;
        if (std::exchange(fader, value) != value) state.fullTableDirty = true;
    }
    fresh.reset();
}

} // namespace lumbrine
