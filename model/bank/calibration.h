// Building the track map: a scan that steps the surfaces through all banks and joins the names that they show. It
// takes the user's view away for a while, so it runs when there is no map, when the map proves wrong, and when the
// client asks for it.
//
// A bank that has not changed within about 0.25 s of a press counts as the end of the session. At most 64 banks are
// walked either way: sessions of up to 520 tracks fit 8 strips, of up to 1,040 tracks 16.
#pragma once

#include "base/bilingual.h"
#include "model/bank/surface_moves.h"
#include "model/state/jobs.h"
#include "model/tracks/session_capture.h"
#include "model/tracks/track_metadata.h"

#include <map>
#include <vector>

namespace lumbrine {

class Calibration {
public:
    static constexpr Duration pingRunBeforeScan = seconds(2.0); // until then Pro Tools is still filling the strips
    static constexpr Duration retryDelay = seconds(2.0);
    static constexpr int maxBanks = 64; // each way

    struct Parts {
        SurfaceMoves& moves;
        BankMap& bankMap;
        ClientMirror& mirror;
        SessionCapture& capture;
        TrackMetadata& metadata;
        ActivityLog& log;
    };

    Calibration(const Jobs& modelJobs, ReceiverState& receiverState, Parts otherParts, Bilingual bilingual);

    // Starts a scan unless something speaks against it: Pro Tools not connected or only just, its transport running,
    // the banks already being moved, or, unless `force`, a map that is there. A scan whose map does not fit the display
    // in the end is repeated once, unless the banks are being moved then. Main thread.
    void calibrateBanks(bool force);

private:
    // Fader positions by the session index that strip 0 had when they were seen.
    using FaderRecord = std::map<std::size_t, std::vector<double>>;

    struct Scanned {
        TrackNames map;
        FaderRecord faders;
    };

    bool admitted(bool force);

    // On a background thread
    void scan();
    void rewind();
    Scanned walk();
    std::vector<double> shownFaders(std::size_t width) const;

    // On the main thread
    void commit(Scanned scanned);
    void finish();
    void retryOrGiveUp();
    void scanAnew();

    const Jobs& jobs;
    ReceiverState& state;
    const Parts parts;
    const Bilingual text;
};

} // namespace lumbrine
