// What Pro Tools shows on the surfaces, taken into the state and handed on to the client. Comes on the MIDI threads;
// what touches the state hops to the main thread.
#pragma once

#include "model/bank/bank_map.h"
#include "model/bank/name_clock.h"
#include "model/hands/probe_exchange.h"
#include "model/mirror/meter_bank.h"
#include "model/reactions/switch_tracker.h"
#include "model/state/jobs.h"
#include "model/tracks/session_capture.h"
#include "surface/surface_wiring.h"

namespace lumbrine {

class SurfaceFeedback final : public SurfaceListener {
public:
    // Pro Tools echoes each move some time later. An echo that comes while the client holds the fader and has moved it
    // less than this ago would fight the finger, and is not passed on.
    static constexpr Duration echoSilence = seconds(1.5);

    // A pause in the pings that begins a new run of them.
    static constexpr Duration pingPause = seconds(2.0);

    struct Parts {
        ActivityLog& log;
        ClientMirror& mirror;
        SwitchTracker& switches;
        SessionCapture& capture;
        BankMap& bankMap;
        MeterBank& meters;
        NameClock& nameClock;
        ProbeExchange& probe;
    };

    SurfaceFeedback(const Jobs& modelJobs, ReceiverState& receiverState, Parts otherParts);

    void surfaceLog(const std::string& line) override;
    void faderFeedback(Strip strip, double value) override;
    void trackNameShown(Strip strip, std::string_view text) override;
    void meterShown(Strip strip, int side, int level) override;
    void vpotShown(Strip strip, int value, bool centre, bool rightSide) override;
    void ledShown(SurfaceID surface, int zone, int port, bool on) override;
    void pingReceived(SurfaceID surface, int pingCount) override;

private:
    void showFader(Strip strip, double value);
    void showName(Strip strip, const std::string& name);
    void showStripLed(Strip strip, int port, bool on);
    void showSelect(Strip strip, bool on);
    void showTransportLed(int port, bool on);
    void showBankLed(int port, bool on);
    void notePing(SurfaceID surface, int pingCount);

    const Jobs& jobs;
    ReceiverState& state;
    const Parts parts;
};

} // namespace lumbrine
