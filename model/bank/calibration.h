// Building the track map: a scan that steps the surfaces through all banks and joins the names that they show. It
// takes the user's view away for a while, so it runs when there is no map, when the map proves wrong, and when the
// client asks for it.
//
// Where a press of the bank key shows nothing within 1.1 s, Pro Tools' track list says whether the session goes on.
// Without one that agrees, a few steps by channels tell (ScanEnding). Sessions of up to 2,048 tracks are mapped; of a
// larger one no position is known.
#pragma once

#include "model/bank/surface_moves.h"
#include "model/bank/track_capture.h"
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
    static constexpr int maxTracks = 2048;
    static constexpr int sparePresses = 8;                 // each way, as some may get lost
    static constexpr Duration longestWay = seconds(300.0); // each way

    struct Parts {
        DeskQueue& queue;
        SurfaceMoves& moves;
        BankMap& bankMap;
        TrackCapture& capture;
        ClientMirror& mirror;
        TrackMetadata& metadata;
    };

    // `debug`: print what scans have learned of Pro Tools.
    Calibration(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Parts parts, bool debug);

    static constexpr Duration patience = seconds(10.0);

    // Asks for a scan unless something speaks against it: Pro Tools not connected or only just, its transport running,
    // a scan under way, or, unless `force`, somebody else moving the banks, a map that is there, nothing to find
    // (`mayFindTracks`) or the client's hand on a fader. One that the client asked for waits for its turn, at most
    // `patience`. A scan whose map does not fit the displays in the end is repeated once, unless the banks are being
    // moved then. Main thread.
    void calibrateBanks(bool force, std::optional<Asked> asked = {});

    // False after a scan of a session without tracks, until something is shown or listed that it did not know. Main
    // thread.
    bool mayFindTracks() const;

    // Whether the last scan already went by that list. Main thread.
    bool hasLaidOver(const std::vector<TrackIdentity>& list) const;

    // Another session may be open now: scans it, unless somebody has the surfaces. Main thread.
    void scanAnother();

    // The map does not fit the displays any more. Main thread.
    void forgetMap();

    // The last shown name has gone. Without a session Pro Tools shows nothing on all strips, and the next one may look
    // the same where the user is, so the map is forgotten unless its own tracks may be shown so. Main thread.
    void displaysEmptied();

private:
    bool admitted(bool force);

    // On the desk's thread
    void scan();
    void readList();
    bool goesOn(int presses, TimePoint since) const;
    void returnTo(const SurveyedBank& start, std::size_t banks);
    bool rewind();
    bool lostItsWay(const Session& scanned);
    Session walk(bool topIsSure);
    void printLearned(const TrackSurvey& survey, const Session& session) const;
    enum class KeyThatShowedNothing { metTheEnd, moved, wasLost, isUnclear };
    KeyThatShowedNothing meaningOfLastKey(TrackSurvey& survey);
    KeyThatShowedNothing lookBack(TrackSurvey& survey);
    SurveyedBank stepBack(const SurveyedBank& shown, bool mayShowNothing);

    // On the main thread
    bool mayShowNoNames(const Session& session) const;
    void forgetSession();
    bool commit(Session scanned); // true when the map is sure
    void finish();
    void retryOrGiveUp();
    void scanAnew();

    const Jobs& jobs;
    ReceiverState& state;
    ActivityLog& log;
    const Parts parts;
    const bool debug;
    Session forgotten;               // what the next scan may find unchanged
    std::vector<std::string> listed; // of the scan under way, or the last one, like the next
    bool hiddenAreListed = false;    // perhaps, among these
    TimePoint began = distantPast;   // the scan under way, or the last one, like the next
    bool wasInterrupted = false;     // a surface came, went or was silent
    bool wasClosed = false;          // the session, so that another one may be open now
    bool isContradicted = false;     // by the list of the scripting service
};

} // namespace lumbrine
