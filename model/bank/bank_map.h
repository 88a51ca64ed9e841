// Which part of the session the surfaces show: the bank offset, found by the shown names. Main thread only.
#pragma once

#include "model/bank/track_window.h"
#include "model/mirror/client_mirror.h"
#include "model/state/activity_log.h"
#include "model/state/jobs.h"

#include <optional>

namespace lumbrine {

class BankMap {
public:
    // For so long one strip may show something else than a name, as when Pro Tools shows a value, and the position
    // stays.
    static constexpr Duration overwritten = seconds(1.0);

    // `debug`: print why a window could not be found.
    BankMap(const Jobs& jobs, ReceiverState& state, ActivityLog& log, ClientMirror& mirror, bool debug);

    // The names on the shown strips.
    TrackNames window() const;

    // The position by the shown names alone; -1 when they do not tell, or the map is not sure.
    int shownPosition() const;

    // Whether the shown names lie somewhere in the map, perhaps at several places.
    bool fitsMap() const { return fitsSomewhere(state.published.session.tracks, window()); }

    // Finds the position by the shown names, and tells the client when it has changed or is lost. Does nothing without
    // a map, or during a seek, which knows the position better than names that lag, or a scan, which passes by.
    void relocalize();

    // The shown names tell the position, and it is not a seek's or a scan's.
    bool isSure() const;

    // The strips are about to show other tracks.
    void resetForBankMove();

private:
    void learn(const TrackNames& shown, std::size_t position);
    bool isOverwritten(const TrackNames& shown);
    void printDiagnosis(const TrackNames& shown) const;

    const Jobs& jobs;
    ReceiverState& state;
    ActivityLog& log;
    ClientMirror& mirror;
    const bool debug;
    std::optional<TimePoint> overwrittenSince;
};

} // namespace lumbrine
