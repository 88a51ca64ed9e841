// The simulated session: tracks and transport as plain values, and a callback for each change. It knows nothing of
// control surfaces. Surfaces, scripting service and screen all show this one session.
//
// Not synchronised: the owner guards it (SimulatedProTools by its lock). Copies have the values but no listeners.
#pragma once

#include "platform/api/time.h"
#include "simulator/simulated_track.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

struct SessionChange {
    enum class Kind {
        values,     // fader, switches, pan, group, meter program, comment or colour of one track
        automation, // automation mode or trim of one track
        structure,  // names, order, number, folders or hiding of tracks
        transport,
        opened,
        closed,
    };

    Kind kind;
    int trackID = 0; // set for `values` and `automation`
};

struct SimulatedTransport {
    bool playing = false;
    bool recording = false;
    bool recordReady = false; // record was pressed while stopped: the next play records
    bool loop = false;
    bool quickPunch = false;
    bool onLine = false;
    Duration position = Duration::zero(); // from the start of the session

    bool operator==(const SimulatedTransport&) const = default;
};

class SimulatedSession {
public:
    // The session is open, at position zero. Assigns the ids of the tracks, from 1.
    explicit SimulatedSession(std::string sessionName = "Untitled", std::vector<SimulatedTrack> initialTracks = {});

    SimulatedSession(const SimulatedSession& other);
    SimulatedSession& operator=(const SimulatedSession&) = delete;

    // Adds a listener, called after each change and inside the editing call. It may read the session, but not edit it.
    void onChange(std::function<void(const SessionChange&)> listener);

    // ---- Looking. A closed session shows no tracks, but keeps them until it is opened again.

    const std::string& name() const { return sessionName; }
    bool isOpen() const { return openNow; }
    const std::vector<SimulatedTrack>& tracks() const { return trackList; }
    const SimulatedTransport& transport() const { return transportState; }

    const SimulatedTrack* find(int id) const;                        // null when there is none
    const SimulatedTrack* findByName(std::string_view name) const;   // the first with exactly this name
    const std::vector<int>& shownTracks() const { return shownIDs; } // ids in session order, without hidden tracks
    bool hiddenByFolder(const SimulatedTrack& track) const;          // a folder around it is closed or hidden
    bool anySolo() const { return soloed > 0; }
    bool impliedMute(const SimulatedTrack& track) const { return anySolo() && !track.solo && !track.mute; }

    // ---- Editing. An id or an index that does not exist changes nothing and returns false.

    // Changes any fields of a track except its id. Calls the listeners once, or not at all when nothing has changed.
    bool change(int id, const std::function<void(SimulatedTrack&)>& edit);
    void changeAll(const std::function<void(SimulatedTrack&)>& edit);

    static constexpr std::size_t atTheEnd = static_cast<std::size_t>(-1);
    int add(SimulatedTrack track, std::size_t index = atTheEnd); // returns its id
    bool remove(int id);
    bool move(int id, std::size_t index); // index among all tracks, hidden ones included; clamped to the last

    bool rename(int id, std::string name);
    bool setHidden(int id, bool hidden);
    bool select(int id, bool addToSelection); // selects only this track, or toggles it in the selection

    void open();
    void close(); // stops the transport

    // Closes the session and opens the tracks of another one at position zero. The tracks get new ids.
    void exchange(const SimulatedSession& other);

    // ---- Transport.

    void play(); // also records if record was pressed before
    void stop();
    void record(); // while playing: punches in or out; while stopped: toggles whether the next play records
    void locate(Duration position); // not before zero
    void toggleLoop();
    void toggleQuickPunch();
    void toggleOnLine();

    // Advances a playing transport; does nothing while it is stopped. Calls no listener.
    void elapse(Duration time);

private:
    SimulatedTrack* mutableFind(int id);
    void announce(SessionChange::Kind kind, int trackID = 0);
    void announceDifference(const SimulatedTrack& before, const SimulatedTrack& after);
    void setTransport(const SimulatedTransport& next);
    void reindex();

    std::string sessionName;
    bool openNow = true;
    std::vector<SimulatedTrack> trackList;
    SimulatedTransport transportState;
    int lastID = 0;

    std::vector<int> shownIDs; // this and the two below are computed from trackList
    std::vector<std::size_t> indexOfID;
    int soloed = 0;

    std::vector<std::function<void(const SessionChange&)>> listeners;
};

} // namespace lumbrine
