#include "model/bank/track_capture.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace lumbrine {

TrackCapture::TrackCapture(const Jobs& jobs, ReceiverState& state, const BankMap& bankMap, DisplayWatch& displays)
    : jobs(jobs), state(state), bankMap(bankMap), displays(displays) {}

void TrackCapture::faderShown(Strip strip) {
    assert(jobs.runtime.onMain());
    fresh[strip.slot()] = jobs.runtime.now();
    captureSoon();
}

void TrackCapture::selectsShown() {
    freshSelects = jobs.runtime.now();
    captureSoon();
}

void TrackCapture::namesShown() {
    fresh.fill(jobs.runtime.now());
    selectsShown();
}

void TrackCapture::allShown() {
    const TimePoint now = jobs.runtime.now();
    for (StripState& strip : state.published.strips)
        if (!strip.mayKeepFaderBack(now)) strip.believeShownFader();
    namesShown();
}

void TrackCapture::captureNow() {
    jobs.runOnMain([this] {
        if (isSure()) capture(jobs.runtime.now());
    });
}

void TrackCapture::captureSoon() {
    if (std::exchange(looking, true)) return;
    jobs.onMainAfter(stillness, [this] {
        looking = false;
        const bool sure = isSure();
        if (sure) capture(jobs.runtime.now() - stillness);
        if (!anyFresh()) return;
        // With an unknown position, or a job under way, what changes that asks again.
        if (sure || (state.quiet() && state.published.bankOffset >= 0)) captureSoon();
    });
}

bool TrackCapture::isSure() const {
    return displays.age() >= stillness && bankMap.isSure();
}

bool TrackCapture::anyFresh() const {
    return freshSelects || std::ranges::any_of(fresh, [](const auto& shown) { return shown.has_value(); });
}

void TrackCapture::capture(TimePoint shownUntil) {
    captureFaders(shownUntil);
    captureSelects(shownUntil);
}

void TrackCapture::captureFaders(TimePoint shownUntil) {
    for (std::size_t slot = 0; slot < fresh.size(); ++slot) {
        if (!fresh[slot] || *fresh[slot] > shownUntil) continue;
        fresh[slot].reset();
        const StripState& strip = state.published.strips[slot];
        Track* const track = trackOn(slot);
        if (track == nullptr || strip.faderUnsure || !strip.shownFader) continue;
        if (std::exchange(track->fader, strip.shownFader) != strip.shownFader) state.fullTableDirty = true;
    }
}

void TrackCapture::captureSelects(TimePoint shownUntil) {
    if (!freshSelects || *freshSelects > shownUntil) return;
    freshSelects.reset();
    for (std::size_t slot = 0; slot < stripCount; ++slot) {
        const bool select = state.published.strips[slot].select;
        if (Track* const track = trackOn(slot); track != nullptr && std::exchange(track->select, select) != select)
            state.fullTableDirty = true;
    }
}

Track* TrackCapture::trackOn(std::size_t slot) {
    const auto index = slot < state.published.shownStrips().size() ? state.published.trackOn(slot) : std::nullopt;
    if (!index) return nullptr;
    Track& track = state.published.session.tracks[*index];
    return track.isThere() ? &track : nullptr;
}

} // namespace lumbrine
