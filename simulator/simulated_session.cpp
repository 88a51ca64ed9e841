#include "simulator/simulated_session.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace lumbrine {

SimulatedSession::SimulatedSession(std::string name, std::vector<SimulatedTrack> tracks)
    : sessionName(std::move(name)), trackList(std::move(tracks)) {
    for (SimulatedTrack& track : trackList)
        track.id = ++lastID;
    reindex();
}

// Without the listeners: they belong to the original, and must not be called for changes of a copy.
SimulatedSession::SimulatedSession(const SimulatedSession& other)
    : sessionName(other.sessionName), openNow(other.openNow), trackList(other.trackList),
      transportState(other.transportState), lastID(other.lastID), shownIDs(other.shownIDs), indexOfID(other.indexOfID),
      soloed(other.soloed) {}

void SimulatedSession::onChange(std::function<void(const SessionChange&)> listener) {
    listeners.push_back(std::move(listener));
}

const SimulatedTrack* SimulatedSession::find(int id) const {
    if (id < 1 || static_cast<std::size_t>(id) >= indexOfID.size()) return nullptr;
    const std::size_t index = indexOfID[static_cast<std::size_t>(id)];
    return index < trackList.size() ? &trackList[index] : nullptr;
}

SimulatedTrack* SimulatedSession::mutableFind(int id) {
    return const_cast<SimulatedTrack*>(std::as_const(*this).find(id));
}

const SimulatedTrack* SimulatedSession::findByName(std::string_view name) const {
    const auto found = std::ranges::find(trackList, name, &SimulatedTrack::name);
    return found == trackList.end() ? nullptr : &*found;
}

bool SimulatedSession::hiddenByFolder(const SimulatedTrack& track) const {
    const SimulatedTrack* folder = find(track.folder);
    // At most as many steps as there are tracks, because two folders may contain each other.
    for (std::size_t steps = 0; folder != nullptr && folder->isFolder && steps < trackList.size(); ++steps) {
        if (folder->closed || folder->hidden) return true;
        folder = find(folder->folder);
    }
    return false;
}

bool SimulatedSession::change(int id, const std::function<void(SimulatedTrack&)>& edit) {
    SimulatedTrack* track = mutableFind(id);
    if (track == nullptr) return false;
    const SimulatedTrack before = *track;
    edit(*track);
    track->id = id; // an edit that replaces the whole track must not change its identity
    announceDifference(before, *track);
    return true;
}

void SimulatedSession::changeAll(const std::function<void(SimulatedTrack&)>& edit) {
    for (std::size_t i = 0; i < trackList.size(); ++i)
        change(trackList[i].id, edit);
}

int SimulatedSession::add(SimulatedTrack track, std::size_t index) {
    track.id = ++lastID;
    const auto place = trackList.begin() + static_cast<std::ptrdiff_t>(std::min(index, trackList.size()));
    trackList.insert(place, std::move(track));
    reindex();
    announce(SessionChange::Kind::structure);
    return lastID;
}

bool SimulatedSession::remove(int id) {
    if (std::erase_if(trackList, [id](const SimulatedTrack& track) { return track.id == id; }) == 0) return false;
    reindex();
    announce(SessionChange::Kind::structure);
    return true;
}

bool SimulatedSession::move(int id, std::size_t index) {
    const auto from = std::ranges::find(trackList, id, &SimulatedTrack::id);
    if (from == trackList.end()) return false;
    const auto to = trackList.begin() + static_cast<std::ptrdiff_t>(std::min(index, trackList.size() - 1));
    if (from == to) return true;
    if (from < to) {
        std::rotate(from, from + 1, to + 1);
    } else {
        std::rotate(to, from, from + 1);
    }
    reindex();
    announce(SessionChange::Kind::structure);
    return true;
}

bool SimulatedSession::rename(int id, std::string name) {
    return change(id, [&name](SimulatedTrack& track) { track.name = std::move(name); });
}

bool SimulatedSession::setHidden(int id, bool hidden) {
    return change(id, [hidden](SimulatedTrack& track) { track.hidden = hidden; });
}

bool SimulatedSession::select(int id, bool addToSelection) {
    if (find(id) == nullptr) return false;
    if (addToSelection) return change(id, [](SimulatedTrack& track) { track.selected = !track.selected; });
    changeAll([id](SimulatedTrack& track) { track.selected = track.id == id; });
    return true;
}

void SimulatedSession::open() {
    if (openNow) return;
    openNow = true;
    reindex();
    announce(SessionChange::Kind::opened);
}

void SimulatedSession::close() {
    if (!openNow) return;
    stop();
    openNow = false;
    reindex();
    announce(SessionChange::Kind::closed);
}

void SimulatedSession::exchange(const SimulatedSession& other) {
    close();
    sessionName = other.sessionName;
    trackList = other.trackList;
    transportState = {};
    // All tracks get new IDs, so that a listener that remembers an old ID never finds a track of the new session.
    const int before = lastID;
    for (SimulatedTrack& track : trackList) {
        track.id += before;
        if (track.folder != 0) track.folder += before;
        lastID = std::max(lastID, track.id);
    }
    open();
}

void SimulatedSession::play() {
    if (!openNow) return;
    SimulatedTransport next = transportState;
    next.playing = true;
    // Record pressed while stopped only arms the transport (recordReady); the recording starts with Play.
    next.recording = next.recording || next.recordReady;
    next.recordReady = false;
    setTransport(next);
}

void SimulatedSession::stop() {
    SimulatedTransport next = transportState;
    next.playing = next.recording = next.recordReady = false;
    setTransport(next);
}

void SimulatedSession::record() {
    if (!openNow) return;
    SimulatedTransport next = transportState;
    bool& toggled = next.playing ? next.recording : next.recordReady;
    toggled = !toggled;
    setTransport(next);
}

void SimulatedSession::locate(Duration position) {
    SimulatedTransport next = transportState;
    next.position = std::max(position, Duration::zero());
    setTransport(next);
}

void SimulatedSession::toggleLoop() {
    SimulatedTransport next = transportState;
    next.loop = !next.loop;
    setTransport(next);
}

void SimulatedSession::toggleQuickPunch() {
    SimulatedTransport next = transportState;
    next.quickPunch = !next.quickPunch;
    setTransport(next);
}

void SimulatedSession::toggleOnLine() {
    SimulatedTransport next = transportState;
    next.onLine = !next.onLine;
    setTransport(next);
}

void SimulatedSession::elapse(Duration time) {
    if (transportState.playing) transportState.position += time;
}

void SimulatedSession::setTransport(const SimulatedTransport& next) {
    if (next == transportState) return;
    transportState = next;
    announce(SessionChange::Kind::transport);
}

void SimulatedSession::announce(SessionChange::Kind kind, int trackID) {
    for (const auto& listener : listeners)
        listener({kind, trackID});
}

void SimulatedSession::announceDifference(const SimulatedTrack& before, const SimulatedTrack& after) {
    if (before == after) return;
    soloed += static_cast<int>(after.solo) - static_cast<int>(before.solo);
    const auto structure = [](const SimulatedTrack& track) {
        return std::tie(track.name, track.hidden, track.isFolder, track.closed, track.folder);
    };
    if (structure(before) != structure(after)) {
        reindex();
        announce(SessionChange::Kind::structure);
    }
    if (before.automation != after.automation || before.trim != after.trim)
        announce(SessionChange::Kind::automation, after.id);

    // Copy all fields that have been announced above; if the tracks still differ, other values have changed as well.
    SimulatedTrack rest = before;
    rest.name = after.name;
    rest.hidden = after.hidden;
    rest.isFolder = after.isFolder;
    rest.closed = after.closed;
    rest.folder = after.folder;
    rest.automation = after.automation;
    rest.trim = after.trim;
    if (rest != after) announce(SessionChange::Kind::values, after.id);
}

void SimulatedSession::reindex() {
    shownIDs.clear();
    indexOfID.assign(static_cast<std::size_t>(lastID) + 1, atTheEnd);
    soloed = 0;
    for (std::size_t i = 0; i < trackList.size(); ++i) {
        const SimulatedTrack& track = trackList[i];
        indexOfID[static_cast<std::size_t>(track.id)] = i;
        if (track.solo) ++soloed;
    }
    if (!openNow) return;
    for (const SimulatedTrack& track : trackList)
        if (!track.hidden && !hiddenByFolder(track)) shownIDs.push_back(track.id);
}

} // namespace lumbrine
