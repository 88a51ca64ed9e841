#include "tests/bank_map/sessions/session_names.h"

#include "tests/studio/studio.h"

#include <utility>

namespace lumbrine {

MakeSession named(Names names) {
    return [names = std::move(names)] { return tracksNamed(names); };
}

MakeSession flat(Names names) {
    return [names = std::move(names)] {
        std::vector<SimulatedTrack> tracks(names.size());
        for (std::size_t i = 0; i < names.size(); ++i)
            tracks[i].name = names[i];
        return SimulatedSession("Session", std::move(tracks));
    };
}

Names some(int from, int to) {
    Names names;
    for (int i = from; i < to; ++i)
        names.push_back({'Q', static_cast<char>('a' + i / 26), static_cast<char>('a' + i % 26)});
    return names;
}

MakeSession numbered(int tracks) {
    return named(some(0, tracks));
}

Names operator+(Names left, const Names& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

Names equal(std::size_t count, const std::string& name) {
    return Names(count, name);
}

Names repeated(const Names& names, int times) {
    Names all;
    for (int i = 0; i < times; ++i)
        all.insert(all.end(), names.begin(), names.end());
    return all;
}

Names counted(const std::string& name, int count) {
    Names names;
    for (int i = 1; i <= count; ++i)
        names.push_back(name + std::to_string(i));
    return names;
}

Names with(Names names, std::size_t at, const std::string& name) {
    names[at] = name;
    return names;
}

SimulatedTrack trackCalled(const std::string& name) {
    SimulatedTrack track;
    track.name = name;
    return track;
}

int idOf(const SimulatedSession& session, std::size_t index) {
    return session.tracks()[index].id;
}

MakeSession edited(const Names& names, Edit edit) {
    return [names, edit = std::move(edit)] {
        SimulatedSession session = tracksNamed(names);
        edit(session);
        return session;
    };
}

} // namespace lumbrine
