// What a session leaves behind: all that the checkers get to see of it.
#pragma once

#include "model/state/published_state.h"
#include "platform/virtual/standstills.h"
#include "remote/session_picture.h"
#include "simulator/host_record.h"
#include "tests/simulation/job_watch.h"
#include "tests/simulation/receiver_runtime.h"
#include "tests/simulation/recording_sockets.h"
#include "tests/simulation/source_truth.h"
#include "tests/simulation/source_watch.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace lumbrine::simulation {

// How it went after the end of all trouble.
struct Recovery {
    Duration took = Duration::zero();    // until everything was right
    bool mapWasStale = false;            // it did not show, and the client had to ask for a scan
    std::vector<std::string> violations; // what was not right in time
};

// The program's end, for which nobody is told to let go first: what came since the rest of the evidence was taken.
struct Ending {
    TimePoint begun;                                   // the last commands
    TimePoint ended;                                   // the program was told to end
    std::vector<ReceivedDatagram> datagrams;           // as the receiver got them
    std::vector<std::vector<ReceivedPacket>> surfaces; // as the host got them
    std::vector<JobRun> runs;                          // of jobs
};

struct Evidence {
    TimePoint begun;                                      // the ticks count from here
    std::vector<ReceivedDatagram> datagrams;              // as the receiver got them
    SentDatagrams sent;                                   // by the receiver, without meters
    std::vector<std::vector<ReceivedPacket>> surfaces;    // as the host got them
    std::vector<ScriptingSetter> setters;                 // as the scripting service got them
    std::vector<std::pair<TimePoint, std::string>> lines; // of the log
    HostRecord record;                                    // of the host
    JobRecord jobs;
    std::vector<Stretch> disturbances;      // of the host, with what they leave behind
    std::vector<std::string> untimelySends; // of state, while the surfaces moved
    Recovery recovery;
    std::vector<Pause> pauses; // see pauses.h

    std::vector<ToldTracks> told;  // names, colours and comments
    std::vector<HostTrack> tracks; // of the host, at the end
    Names comments;                // of the receiver, at the end
    int heldElements = 0;          // of the host's screen, at the end

    remote::SessionPicture picture; // of the phone that said hello at the end
    bool phoneIsConnected = false;
    PublishedState model;   // at the same moment
    SimulatorSnapshot host; // at the same moment

    Ending ending;
    Load load; // of the receiver's own threads and queues

    std::uint64_t traceHash = 0;
    Duration virtualTime = Duration::zero();
};

} // namespace lumbrine::simulation
