// The session, as far as the receiver knows it: one record for each track, in the order of the banks.
#pragma once

#include "base/blank_text.h"
#include "base/rgb_color.h"
#include "client_link/state_messages.h"
#include "model/state/automation_mode.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

// By what Pro Tools' scripting service knows a track. A name can be changed; an id cannot, but not every version of the
// service has them.
struct TrackIdentity {
    std::string id = {};    // empty: unknown
    std::string name = {};  // in full
    std::int64_t index = 0; // in the service's list, from 1; 0: unknown
};

// By the ids where both are known. Otherwise both must have the same name, and the same index where both are known:
// then it is hardly another track that was given the name of the first.
bool isSame(const TrackIdentity& left, const TrackIdentity& right);

// What is known of one track. Absent, or neutral for switches and texts: nobody has said so far.
struct Track {
    std::string display;             // what the surfaces call it, at most four characters; from the scan
    bool displayKnown = true;        // false: it has been listed, and no strip has shown it yet
    std::optional<std::string> name; // in full; from the scripting service or the screen, like the next five
    std::optional<RGBColor> color;
    bool mute = false;
    bool solo = false;
    bool record = false;
    bool inputMonitor = false;
    bool select = false;         // seen while the track was on the surfaces, like the next three
    std::optional<double> fader; // 0.0-1.0 nominally
    std::optional<SessionPan> pan;
    std::uint8_t mode = autoModeUnknown;
    std::string comment; // from the Mix window
    std::string id = {}; // of the scripting service, like the next one; empty and 0 while unknown
    std::int64_t listIndex = 0;

    void forgetShown() {
        select = false;
        fader.reset();
        pan.reset();
        mode = autoModeUnknown;
    }

    // A blank display alone may be that of a strip without a track.
    bool isThere() const { return name || !isBlank(display); }

    TrackIdentity identity() const { return {.id = id, .name = name.value_or(""), .index = listIndex}; }
};

// A value: a scan makes a new one.
struct Session {
    std::vector<Track> tracks; // empty while there is no map of the session
    bool listed = false;       // a track list has been adopted
    bool sure = true;          // false: a scan could not tell which tracks are where, so no position is known
    bool surveyed = false;     // a walk has looked for modes and pans: the client gets the tables of both

    // A session of which nothing but the tracks' display names is known.
    static Session of(const std::vector<std::string>& displays);

    bool empty() const { return tracks.empty(); }
    std::size_t size() const { return tracks.size(); }
};

// The session after its track list has changed: one track for each of the list. A track that was there before keeps
// what is known of it; of one that is new or has another name, the display is unknown.
Session followed(const Session& before, const std::vector<TrackIdentity>& listed);

// Whether both have the same tracks in the same order, as far as their display names can tell.
bool sameDisplays(const Session& left, const Session& right);

// Gives a session that has just been scanned what was known before. Only a session whose display names are all the same
// is taken for the same one: then every value is kept that the scan did not see itself. Of any other nothing is kept,
// because four letters do not say which of its tracks is which.
void carryOver(const Session& before, Session& scanned);

} // namespace lumbrine
