#include "model/bank/bank_map.h"

namespace lumbrine {

namespace {

std::string bracketed(const TrackNames& names) {
    std::string list = "[";
    for (const std::string& name : names)
        list += (list.size() > 1 ? ", \"" : "\"") + name + "\"";
    return list + "]";
}

} // namespace

BankMap::BankMap(ReceiverState& state, ActivityLog& log, ClientMirror& mirror, bool debug)
    : state(state), log(log), mirror(mirror), debug(debug) {}

TrackNames BankMap::window() const {
    TrackNames names;
    for (const StripState& strip : state.published.shownStrips())
        names.push_back(strip.name);
    return names;
}

void BankMap::relocalize() {
    if (state.published.session.empty() || state.published.banksUsedBy == BankUser::seek) return;
    const TrackNames shown = window();
    const int position = locate(state.published.session.tracks, shown);
    if (position < 0 && debug) printDiagnosis(shown);
    if (position == state.published.bankOffset) return;
    state.published.bankOffset = position;
    state.published.changed();
    mirror.send(occasion::bankView);
}

void BankMap::printDiagnosis(const TrackNames& shown) const {
    TrackNames map;
    for (const Track& track : state.published.session.tracks)
        map.push_back(track.display);
    log.print("[DIAG] locate=-1 win=" + std::to_string(state.published.winW) + " map(" + std::to_string(map.size()) +
              ")=" + bracketed(map) + " window=" + bracketed(shown));
}

void BankMap::resetForBankMove() {
    for (StripState& strip : state.published.strips)
        strip.forgetTrack();
}

} // namespace lumbrine
