// Takes what Pro Tools shows on the surfaces into the state and passes it on to the client. The calls come on the MIDI
// threads; what touches the state hops to the main thread.
#pragma once

#include "model/bank/calibration.h"
#include "model/bank/track_capture.h"
#include "model/hands/automation_modes.h"
#include "model/hands/display_watch.h"
#include "model/hands/surfaces.h"
#include "model/mirror/meters.h"
#include "model/reactions/switch_tracker.h"
#include "model/state/jobs.h"
#include "model/tracks/track_metadata.h"
#include "surface/surface_wiring.h"

#include <functional>

namespace lumbrine {

class SurfaceFeedback final : public SurfaceListener {
public:
    // Pro Tools echoes each move some time later. While the client holds a fader and has moved it less than this ago,
    // an echo would fight the finger and is not passed on.
    static constexpr Duration echoSilence = seconds(1.5);

    // After a pause of this length the pings count as a new run.
    static constexpr Duration pingPause = seconds(2.0);

    struct Parts {
        ClientMirror& mirror;
        SwitchTracker& switches;
        BankMap& bankMap;
        Calibration& calibration;
        TrackCapture& capture;
        TrackMetadata& metadata;
        Meters& meters;
        DisplayWatch& displays;
        AutomationModes& automation;
        Surfaces& surfaces;
    };

    SurfaceFeedback(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Parts parts);

    void surfaceLog(const std::string& line) override;
    void faderFeedback(Strip strip, double value) override;
    void trackNameShown(Strip strip, std::string_view text) override;
    void meterShown(Strip strip, int side, int level) override;
    void vpotShown(Strip strip, int value, bool centre, bool rightSide) override;
    void ledShown(SurfaceID surface, int zone, int port, bool on) override;
    void autoLedShown(Strip strip, AutoLedColour colour) override;
    void pingReceived(SurfaceID surface, int pingCount, TimePoint at) override;

    // To be called from time to time: a fader that the client has let go of is where Pro Tools last showed it, also
    // when Pro Tools did not follow the client. Main thread.
    void believeFaders();

    // Called on the main thread when a level ends a rest of the meters.
    std::function<void()> onMetersMove = [] {};

private:
    void showFader(Strip strip, double value);
    void noteName(Strip strip, std::string_view name);
    void showName(Strip strip, const std::string& name);
    void endHands(Strip strip);
    void forgetMode(Strip strip);
    void showStripLed(Strip strip, int port, bool on);
    void showSelect(Strip strip, bool on);
    void showTransportLed(int port, bool on);
    void notePing(SurfaceID surface, int pingCount, TimePoint at, TimePoint before);

    const Jobs& jobs;
    ReceiverState& state;
    ActivityLog& log;
    const Parts parts;
};

} // namespace lumbrine
