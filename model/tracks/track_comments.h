// The comments of the map's tracks, told apart by the tracks' full names. Main thread only.
//
// The Mix window shows a comment beside a name, never beside a position. So a comment is given only to a track whose
// full name no other track of the map has, and it goes where that name goes when the tracks change places. With the
// name it is forgotten.
#pragma once

#include "model/state/receiver_state.h"

#include <map>
#include <string>
#include <vector>

namespace lumbrine {

class TrackComments {
public:
    explicit TrackComments(ReceiverState& receiverState) : state(receiverState) {}

    // What a read is to look for, and by which the map is known again.
    struct Wanted {
        std::vector<std::string> names; // the full names that are not empty and stand for one track alone
        std::vector<std::string> trackMap;
        std::vector<std::string> trackMapFull;
    };

    // No names while the full names do not belong to the map: they are as many as its tracks or they are old.
    Wanted wanted() const;

    // Takes the comments by name that a read has found. Tracks that it did not find keep what they have. Nothing is
    // taken when the map or its names have changed since `wanted`.
    void adopt(const Wanted& wanted, const std::map<std::string, std::string>& found);

    // To be called when the full names have changed.
    void followNames();

private:
    void publish();

    ReceiverState& state;
    std::map<std::string, std::string> known; // by full name
};

} // namespace lumbrine
