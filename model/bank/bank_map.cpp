#include "model/bank/bank_map.h"

#include "model/state/display_name.h"

namespace lumbrine {

namespace {

std::string bracketed(const TrackNames& names) {
    std::string list = "[";
    for (const std::string& name : names)
        list += (list.size() > 1 ? ", \"" : "\"") + name + "\"";
    return list + "]";
}

} // namespace

BankMap::BankMap(const Jobs& jobs, ReceiverState& state, ActivityLog& log, ClientMirror& mirror, bool debug)
    : jobs(jobs), state(state), log(log), mirror(mirror), debug(debug) {}

TrackNames BankMap::window() const {
    TrackNames names;
    for (const StripState& strip : state.published.shownStrips())
        names.push_back(strip.name);
    return names;
}

int BankMap::shownPosition() const {
    const Session& session = state.published.session;
    return session.sure ? locate(session.tracks, window()) : -1;
}

void BankMap::relocalize() {
    if (state.published.session.empty() || state.published.banksUsedBy == BankUser::seek ||
        state.published.calibrating())
        return;
    const TrackNames shown = window();
    const int position = shownPosition();
    if (position < 0 && isOverwritten(shown)) return;
    overwrittenSince.reset();
    if (position < 0 && debug) printDiagnosis(shown);
    if (position >= 0) learn(shown, static_cast<std::size_t>(position));
    if (position == state.published.bankOffset) return;
    state.published.bankOffset = position;
    state.published.changed();
    mirror.send(occasion::bankView);
}

bool BankMap::isSure() const {
    const auto user = state.published.banksUsedBy;
    return user != BankUser::seek && user != BankUser::scan && state.published.bankOffset >= 0 &&
           shownPosition() == state.published.bankOffset;
}

void BankMap::learn(const TrackNames& shown, std::size_t position) {
    std::vector<Track>& tracks = state.published.session.tracks;
    for (std::size_t slot = 0; slot < shown.size() && position + slot < tracks.size(); ++slot) {
        Track& track = tracks[position + slot];
        if (track.displayKnown || !mayShow(shown[slot], track.name.value_or(""))) continue;
        track.displayKnown = true;
        track.display = shown[slot];
        state.published.changed();
        state.fullTableDirty = true;
    }
}

// One strip differs from the last position, and has not for long.
bool BankMap::isOverwritten(const TrackNames& shown) {
    int others = 0;
    for (std::size_t slot = 0; slot < shown.size(); ++slot)
        if (const auto track = state.published.trackOn(slot))
            others += isShownAs(state.published.session.tracks[*track], shown[slot]) ? 0 : 1;
    if (state.published.bankOffset < 0 || others != 1) return false;
    const TimePoint now = jobs.runtime.now();
    if (!overwrittenSince) {
        overwrittenSince = now;
        jobs.onMainAfter(overwritten, [this] { relocalize(); });
    }
    return now - *overwrittenSince < overwritten;
}

void BankMap::printDiagnosis(const TrackNames& shown) const {
    TrackNames map;
    for (const Track& track : state.published.session.tracks)
        map.push_back(track.display);
    log.print("[DIAG] locate=-1 win=" + std::to_string(state.published.winW) + " map(" + std::to_string(map.size()) +
              ")=" + bracketed(map) + " window=" + bracketed(shown));
}

void BankMap::resetForBankMove() {
    for (StripState& strip : state.published.strips) {
        strip.forgetTrack();
        strip.forgetHiddenPan(state.published.panRight);
    }
}

} // namespace lumbrine
