// The tracks' values of one kind, in the order of the session, as tests like to state them.
#pragma once

#include "model/state/session.h"

#include <type_traits>
#include <vector>

namespace lumbrine {

template <typename Value>
std::vector<Value> column(const Session& session, Value Track::* member) {
    std::vector<Value> values;
    for (const Track& track : session.tracks)
        values.push_back(track.*member);
    return values;
}

// Tracks beyond the values keep what they have.
template <typename Value>
void setColumn(Session& session, Value Track::* member, std::type_identity_t<std::vector<Value>> values) {
    for (std::size_t i = 0; i < values.size(); ++i)
        session.tracks.at(i).*member = values[i];
}

inline std::vector<std::string> displaysOf(const Session& session) {
    return column(session, &Track::display);
}

// The full names; none while no list has been adopted. A track without one has an empty name.
inline std::vector<std::string> namesOf(const Session& session) {
    std::vector<std::string> names;
    for (const Track& track : session.tracks)
        if (session.listed || track.name) names.push_back(track.name.value_or(""));
    return names;
}

} // namespace lumbrine
