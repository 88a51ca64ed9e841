// The comments of the map's tracks, told apart by the tracks' full names. Main thread only.
//
// The Mix window shows a comment beside a name, never beside a position. So a comment is given only to a track whose
// full name no other track of the session has. It follows that name when the tracks change places and is forgotten with
// it, and when the scripting service has another id for that name: then it is a track of another session.
#pragma once

#include "model/state/receiver_state.h"

#include <map>
#include <string>
#include <vector>

namespace lumbrine {

class TrackComments {
public:
    explicit TrackComments(ReceiverState& state) : state(state) {}

    // What a read is to look for, and the session that it is for.
    struct Wanted {
        std::vector<std::string> names; // the full names that are not empty and stand for one track alone
        std::vector<Track> tracks;
    };

    Wanted wanted() const;

    // Takes the comments that a read has found, by full name. Tracks without one keep the comment they have. Nothing is
    // taken when the session's names have changed since `wanted`.
    void adopt(const Wanted& wanted, const std::map<std::string, std::string>& found);

    // To be called when the full names have changed, or what they stand for.
    void followNames();

    // Another session may have the same names.
    void forget() { known.clear(); }

private:
    void publish();

    ReceiverState& state;
    struct Known {
        std::string comment;
        std::string id; // of the track; empty while the service had told none
    };
    std::map<std::string, Known> known; // by full name
};

} // namespace lumbrine
