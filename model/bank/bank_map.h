// Which part of the session the surfaces show: the bank offset, found by the shown names. Main thread only.
#pragma once

#include "model/bank/track_window.h"
#include "model/mirror/client_mirror.h"
#include "model/state/activity_log.h"

namespace lumbrine {

class BankMap {
public:
    // `debug`: print why a window could not be found.
    BankMap(ReceiverState& state, ActivityLog& log, ClientMirror& mirror, bool debug);

    // The names on the shown strips.
    TrackNames window() const;

    // Finds the position by the shown names, and tells the client when it has changed or is lost. Does nothing without
    // a map, or during a seek, which knows the position better than names that lag.
    void relocalize();

    // The strips are about to show other tracks.
    void resetForBankMove();

private:
    void printDiagnosis(const TrackNames& shown) const;

    ReceiverState& state;
    ActivityLog& log;
    ClientMirror& mirror;
    const bool debug;
};

} // namespace lumbrine
