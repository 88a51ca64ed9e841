// Which part of the session the surfaces show: the bank offset, found by the shown names. Main thread only.
#pragma once

#include "model/bank/track_window.h"
#include "model/mirror/client_mirror.h"
#include "model/state/activity_log.h"
#include "model/state/receiver_state.h"

namespace lumbrine {

class BankMap {
public:
    // `debugOutput`: print why a window could not be found.
    BankMap(Runtime& rt, ReceiverState& receiverState, ClientMirror& clientMirror, ActivityLog& activityLog,
            bool debugOutput);

    // The names of the strips that are shown. Valid until they change.
    std::span<const std::string> window() const;

    // Finds the position anew and tells the client when it has changed, also when it is lost. Does nothing without a
    // map or during a seek, which knows the position better than names that lag behind.
    void relocalize();

    // Forgets what belonged to the tracks that the strips showed before: LED histories, pan seeks, automation modes.
    void resetForBankMove();

private:
    void printDiagnosis() const;

    [[maybe_unused]] Runtime& runtime; // for assertions
    ReceiverState& state;
    ClientMirror& mirror;
    ActivityLog& log;
    const bool debug;
};

} // namespace lumbrine
