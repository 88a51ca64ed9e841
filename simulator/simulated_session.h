// The simulated session: its tracks and its transport, as plain values that anybody may edit, with a call for each
// change. It knows nothing of control surfaces; every way into the simulated Pro Tools shows this same session.
//
// Belongs to whoever guards it (in SimulatedProTools: its lock). Copies carry the values and no listeners.
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
    int trackID = 0; // with values and automation
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
    // Open, at position zero. The tracks' ids are given here, from 1.
    explicit SimulatedSession(std::string sessionName = "Untitled", std::vector<SimulatedTrack> initialTracks = {});

    SimulatedSession(const SimulatedSession& other);
    SimulatedSession& operator=(const SimulatedSession&) = delete;

    // Called after each change, in the middle of the edit's own call: it may look and remember, and must not edit.
    void onChange(std::function<void(const SessionChange&)> listener);

    // ---- Looking. While the session is closed it has no tracks to show, but keeps them for the next opening.

    const std::string& name() const { return sessionName; }
    bool isOpen() const { return openNow; }
    const std::vector<SimulatedTrack>& tracks() const { return trackList; }
    const SimulatedTransport& transport() const { return transportState; }

    const SimulatedTrack* find(int id) const;                        // null when there is none
    const SimulatedTrack* findByName(std::string_view name) const;   // the first of that exact name
    const std::vector<int>& shownTracks() const { return shownIDs; } // ids in session order without hidden ones
    bool hiddenByFolder(const SimulatedTrack& track) const;          // a folder around it is closed or hidden
    bool anySolo() const { return soloed > 0; }
    bool impliedMute(const SimulatedTrack& track) const { return anySolo() && !track.solo && !track.mute; }

    // ---- Editing. An id or an index that does not exist changes nothing and returns false.

    // Any number of fields at once; one call of the listeners, none when nothing came out different. The id stays.
    bool change(int id, const std::function<void(SimulatedTrack&)>& edit);
    void changeAll(const std::function<void(SimulatedTrack&)>& edit);

    static constexpr std::size_t atTheEnd = static_cast<std::size_t>(-1);
    int add(SimulatedTrack track, std::size_t index = atTheEnd); // returns its id
    bool remove(int id);
    bool move(int id, std::size_t index); // index among all tracks, hidden ones too; at most the last

    bool rename(int id, std::string name);
    bool setHidden(int id, bool hidden);
    bool select(int id, bool addToSelection); // alone, or toggled in the selection

    void open();
    void close(); // stops the transport

    // Closes what is open and opens the tracks of another session, at position zero. Ids are given anew.
    void exchange(const SimulatedSession& other);

    // ---- Transport.

    void play(); // records when record was pressed before
    void stop();
    void record(); // while playing: punches in and out; while stopped: ready for the next play, or no longer
    void locate(Duration position); // not before zero
    void toggleLoop();
    void toggleQuickPunch();
    void toggleOnLine();

    // Lets the playing transport move on; nothing while it is stopped. Calls no listener.
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

    std::vector<int> shownIDs; // this and the two below follow from trackList
    std::vector<std::size_t> indexOfID;
    int soloed = 0;

    std::vector<std::function<void(const SessionChange&)>> listeners;
};

} // namespace lumbrine
