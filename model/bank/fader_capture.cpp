#include "model/bank/fader_capture.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace lumbrine {

FaderCapture::FaderCapture(const Jobs& jobs, ReceiverState& state, const BankMap& bankMap, DisplayWatch& displays)
    : jobs(jobs), state(state), bankMap(bankMap), displays(displays) {}

void FaderCapture::faderShown(Strip strip) {
    assert(jobs.runtime.onMain());
    fresh[strip.slot()] = jobs.runtime.now();
    captureSoon();
}

void FaderCapture::allShown() {
    const TimePoint now = jobs.runtime.now();
    fresh.fill(now);
    for (StripState& strip : state.published.strips)
        if (!strip.mayKeepFaderBack(now)) strip.believeShownFader();
    captureSoon();
}

void FaderCapture::captureNow() {
    jobs.runOnMain([this] {
        if (isSure()) capture(jobs.runtime.now());
    });
}

void FaderCapture::captureSoon() {
    if (std::exchange(looking, true)) return;
    jobs.onMainAfter(stillness, [this] {
        looking = false;
        const bool sure = isSure();
        if (sure) capture(jobs.runtime.now() - stillness);
        if (std::ranges::none_of(fresh, [](const auto& shown) { return shown.has_value(); })) return;
        // With an unknown position, or a job under way, what changes that asks again.
        if (sure || (state.quiet() && state.published.bankOffset >= 0)) captureSoon();
    });
}

bool FaderCapture::isSure() const {
    return displays.age() >= stillness && bankMap.isSure();
}

void FaderCapture::capture(TimePoint shownUntil) {
    for (std::size_t slot = 0; slot < fresh.size(); ++slot) {
        if (!fresh[slot] || *fresh[slot] > shownUntil) continue;
        fresh[slot].reset();
        const StripState& strip = state.published.strips[slot];
        const auto track = slot < state.published.shownStrips().size() ? state.published.trackOn(slot) : std::nullopt;
        if (!track || strip.faderUnsure || !strip.shownFader) continue;
        Track& shown = state.published.session.tracks[*track];
        if (shown.isThere() && std::exchange(shown.fader, strip.shownFader) != strip.shownFader)
            state.fullTableDirty = true;
    }
}

} // namespace lumbrine
