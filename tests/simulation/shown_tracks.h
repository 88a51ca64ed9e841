// Which track a client was shown on a strip, and in a row of the session: followed from the names and positions that
// the receiver sent, and from which track's text the host's displays had when it sent them. A text is no identity; the
// host's own ids are.
//
// A strip's name stands for the track whose text the display had last when the name went out. When the display goes on
// to another track of the same text, no name is sent, and both tracks count until the name is told again; unless a job
// of the receiver's moved the banks, which knows better than the display. A bank button that a client taps is no such
// job: nobody knows where it leads, and its client knows that the strips move. A bank position stands for the tracks
// that the host's list has there. What was sent counts as shown: nobody can know what the network loses or delays.
#pragma once

#include "simulator/host_record.h"
#include "tests/simulation/job_watch.h"
#include "tests/simulation/recording_sockets.h"

#include <array>
#include <map>
#include <string>
#include <vector>

namespace lumbrine::simulation {

class ShownTracks {
public:
    using Tracks = std::vector<int>; // ids; more than one where a text does not tell

    // `received` tells which addresses are one device's, which was shown what any of them was.
    ShownTracks(const SentDatagrams& sent, const HostRecord& host, const std::vector<JobRun>& runs,
                const std::vector<ReceivedDatagram>& received = {});

    // By the strip's name. What was told at that very moment may have come before or after it.
    Tracks onStrip(const std::string& client, int strip, TimePoint at) const;

    // Of a strip that the client was never told of, what is there: what the host's display showed last, or shows first
    // where it has shown nothing yet.
    Tracks unseen(const std::string& client, int strip, TimePoint at) const;

    // What the strip's name stands for changed at that very moment.
    bool changedAt(const std::string& client, int strip, TimePoint at) const;

    // By the strip's name since a finger was put on it, as long as the display did not change its text.
    Tracks underFinger(const std::string& client, int strip, TimePoint touched, TimePoint at) const;

    // By the bank position.
    Tracks byPosition(const std::string& client, int strip, TimePoint at) const;

    // By the name in the row of that session index.
    Tracks inRow(const std::string& client, int index, TimePoint at) const;

    // Of a row that the client was never sent, what is there: the track in that place of the session.
    Tracks unseenInRow(const std::string& client, int index, TimePoint at) const;

    // When a name of that strip was first sent to anybody; the end of time when none was.
    TimePoint firstNamed(int strip) const { return first[static_cast<std::size_t>(strip)]; }

    // A strip's name was sent to it in that time.
    bool wasToldNames(const std::string& client, TimePoint from, TimePoint until) const;

private:
    struct Shown {
        TimePoint from;
        std::string text;
        Tracks tracks;
    };
    enum class InJob { no, perhaps, surely };
    struct Position {
        TimePoint from;
        std::optional<int> offset;
    };
    struct Client {
        std::array<std::vector<Shown>, 16> strips;
        std::vector<Position> positions;
        std::map<int, std::vector<Shown>> rows;
        std::vector<TimePoint> named; // when names were sent
    };

    const Client* find(const std::string& address) const; // null when it was sent nothing
    void display(const ShownTrack& shown, bool byJob);
    void tell(Client& client, const SentDatagram& datagram, InJob job);
    void tellName(Client& client, int strip, std::string text, TimePoint at, InJob job);
    void tellRow(Client& client, int index, const std::string& name, TimePoint at) const;

    const HostRecord& host;
    std::map<std::string, std::string> devices;       // by address: the token of its hellos
    std::map<std::string, Client> clients;            // by device, or by address where there is none
    std::array<std::vector<ShownTrack>, 16> displays; // with the texts as the receiver reads them
    std::array<TimePoint, 16> first;
    std::map<std::string, std::vector<std::pair<TimePoint, int>>> called; // tracks by name or display, and since when
};

} // namespace lumbrine::simulation
