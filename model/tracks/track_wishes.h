// What a client asks for by way of Pro Tools' scripting service: to mute or solo a group of tracks, which leaves the
// surfaces where they are, and to switch input monitoring over.
//
// A wish is for the tracks that the client was shown, whatever happens to the session meanwhile. It is carried out as
// soon as the service takes it, or dropped: three seconds after its datagram, when another device has taken control,
// when none of its tracks is left, or when a newer wish is for the same. Dropping is logged. An attempt of which nobody
// knows whether it succeeded is repeated only where the track list shows that it did not.
#pragma once

#include "base/strip.h"
#include "model/mirror/client_endpoint.h"
#include "model/mirror/client_mirror.h"
#include "model/mirror/track_table.h"
#include "model/tracks/scripting_link.h"
#include "model/tracks/track_metadata.h"
#include "model/tracks/wish_list.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace lumbrine {

class TrackWishes {
public:
    // How long after an attempt that failed the service is asked again.
    static constexpr Duration pause = seconds(0.25);

    struct Parts {
        ClientEndpoint& endpoint;
        const ClientMirror& mirror;
        const TrackTable& table;
        ScriptingLink& scripting;
        TrackMetadata& metadata;
    };

    TrackWishes(const Jobs& jobs, ActivityLog& log, Parts parts);

    // Members are rows of the client's table (TrackTable::identityMeant). Those whose full name
    // is not known cannot be reached, since a display's name may stand for another track. Any thread; returns at once.
    void setGroup(TrackSwitch which, std::vector<int> members, bool enabled, Asked origin);

    // Asks for the opposite of what the client was last told of the track on that strip. Main thread; returns at once.
    void toggleInputMonitor(Strip strip, Asked origin);

private:
    // Why a wish is dropped.
    enum class Reason { unanswered, otherOwner, trackGone, notShown, otherTrack, nameUnknown, refused, tooMany };

    // A wish as the scripting queue gets it.
    struct Attempt {
        Wish wish;
        std::vector<std::string> names = {}; // of its open tracks, as they are called now
    };

    // What came of it, by the tracks' positions among the open ones.
    struct Outcome {
        std::vector<std::size_t> reached;
        std::vector<std::size_t> refused;
        std::optional<PTSLFailure> failure; // that ended the attempt before all tracks were decided
    };

    // On the main thread
    void add(Wish wish);
    void serveSoon();
    std::optional<Attempt> begin();
    bool findTracks(Attempt& attempt);
    void end(const Attempt& attempt, const Outcome& outcome);
    void settle(const Attempt& attempt);
    void putBack(Wish& wish);
    void putOff();
    void dropExpired();
    void watchExpiry();
    void finish(const Wish& wish, Reason reason);
    void logGroup(const Wish& wish);
    void logDrop(const Wish& wish, Reason reason);

    // On the scripting queue
    void serve(PTSLClient& ptsl);
    void look(PTSLClient& ptsl, const Attempt& attempt);
    Outcome carryOut(PTSLClient& ptsl, const Attempt& attempt);
    void set(PTSLClient& ptsl, const Attempt& attempt, std::size_t first, std::size_t count, Outcome& outcome);

    bool isFormer(const Wish& wish) const; // any thread

    const Jobs& jobs;
    ActivityLog& log;
    const Parts parts;

    // Main thread only
    WishList wishes;
    bool served = false;        // a job for the wishes is on the scripting queue
    bool expiryWatched = false; // a job for the next expiry waits
    bool attemptWaits = false;  // a job for the next attempt waits
};

} // namespace lumbrine
