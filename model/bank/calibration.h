// Building the track map: a scan that steps the surfaces through all banks and joins the names that they show. It
// takes the user's view away for a while, so it runs when there is no map, when the map proves wrong, and when the
// client asks for it.
//
// A bank that has not changed within 1.1 s of a press counts as the end of the session, unless Pro Tools' track
// list has more tracks. At most 64 banks are walked either way: sessions of up to 520 tracks fit 8 strips, of up to
// 1,040 tracks 16.
#pragma once

#include "model/bank/fader_capture.h"
#include "model/bank/surface_moves.h"
#include "model/bank/track_survey.h"
#include "model/hands/desk_queue.h"
#include "model/tracks/track_metadata.h"

#include <optional>
#include <vector>

namespace lumbrine {

class Calibration {
public:
    static constexpr Duration pingRunBeforeScan = seconds(2.0); // until then Pro Tools is still filling the strips
    static constexpr Duration retryDelay = seconds(2.0);
    static constexpr int maxBanks = 64; // each way

    struct Parts {
        DeskQueue& queue;
        SurfaceMoves& moves;
        BankMap& bankMap;
        FaderCapture& capture;
        ClientMirror& mirror;
        TrackMetadata& metadata;
    };

    Calibration(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Parts parts);

    static constexpr Duration patience = seconds(10.0);

    // Asks for a scan unless something speaks against it: Pro Tools not connected or only just, its transport running,
    // a scan under way, or, unless `force`, somebody else moving the banks, a map that is there or the client's hand on
    // a fader. One that the client asked for waits for its turn, at most `patience`. A scan whose map does not fit the
    // displays in the end is repeated once, unless the banks are being moved then. Main thread.
    void calibrateBanks(bool force, std::optional<Asked> asked = {});

    // The map does not fit the displays any more. Main thread.
    void forgetMap();

private:
    bool admitted(bool force);

    // On the desk's thread
    void scan();
    void rewind();
    Session walk();
    std::vector<std::optional<double>> shownFaders(std::size_t width) const;

    // On the main thread
    std::vector<std::string> listedNames() const;
    void commit(Session scanned);
    void finish();
    void retryOrGiveUp();
    void scanAnew();

    const Jobs& jobs;
    ReceiverState& state;
    ActivityLog& log;
    const Parts parts;
    Session forgotten; // what the next scan may find unchanged
};

} // namespace lumbrine
