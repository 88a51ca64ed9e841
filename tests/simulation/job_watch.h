// Which jobs moved the surfaces, and when, as far as somebody can tell who looks often: the receiver's flags for a
// scan, a seek and a walk, and its count of takings of the banks, with the host's truth at both ends.
#pragma once

#include "model/state/receiver_state.h"
#include "platform/api/runtime.h"
#include "tests/simulation/host_truth.h"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine::simulation {

enum class Job { scan, seek, walk, tap }; // tap: of bank buttons, where nobody can count banks
inline constexpr std::size_t jobCount = 4;

std::string nameOf(Job job); // "scan"

struct JobRun {
    Job job = Job::scan;

    // Not yet at `before`, surely from `first` to `last`, and over at `after`, which is the end of time while it lasts.
    TimePoint before;
    TimePoint first;
    TimePoint last;
    TimePoint after = TimePoint::max();

    bool transportRan = false; // as the receiver knew it, at `before` and at `first`
    std::optional<int> origin; // the bank offset the receiver knew, when it was the same at both
    int width = 8;             // strips that the receiver counted
    HostView hostAtFirst;
    HostView hostAfter;
    Names mapAtFirst;
    Names mapAfter;

    Duration length() const { return last - first; }
    bool mayHaveBeenAt(TimePoint time) const { return before <= time && time <= after; }
    bool wasAt(TimePoint time) const { return first < time && time < last; }
};

// A stretch of time in which something surely was so.
struct Stretch {
    TimePoint first;
    TimePoint last;

    bool holds(TimePoint time) const { return first < time && time < last; }
};

// Who was there, as the receiver had it at that time.
struct PresenceSample {
    TimePoint at;
    bool proTools = false;
    bool client = false;
    int width = 8;
};

// The bank offset while nobody moved the banks and the receiver had the true map.
struct PositionSample {
    TimePoint at;
    int known; // 0 or more
    int host;
};

struct JobRecord {
    std::vector<JobRun> runs;                             // in the order of their ends
    std::vector<Stretch> transport;                       // running, as the receiver knew it
    std::vector<PresenceSample> presence;                 // every 50 ms
    std::vector<PositionSample> positions;                // every 0.4 s where there is one
    std::vector<std::pair<TimePoint, int>> hostOffsets;   // every 50 ms during walks
    std::vector<std::pair<TimePoint, std::string>> lines; // of the log
    std::vector<std::string> violations;                  // two jobs at once
    TimePoint ended;                                      // nothing was looked at later
};

// Main thread. State and host outlive it.
class JobWatch {
public:
    JobWatch(Runtime& rt, const ReceiverState& receiverState, const SimulatedProTools& host);

    // Looks now. The watch also looks by itself sixty times a second; others call this where more may have changed.
    void look();

    void note(const std::string& line); // of the log

    bool anyJob() const { return !state.quiet(); }
    const JobRecord& record() const { return seen; }

    // With the runs that are still under way.
    JobRecord takeRecord();

private:
    void sample();
    void samplePosition();
    void follow(Job job, bool running);

    Runtime& runtime;
    const ReceiverState& state;
    const SimulatedProTools& proTools;
    JobRecord seen;
    std::array<std::optional<JobRun>, jobCount> underWay;

    TimePoint lastLook;
    int lastOffset = -1;
    std::uint64_t lastTaking = 0;
    bool lastTransport = false;
    std::unique_ptr<RepeatingTimer> lookTimer;
    std::unique_ptr<RepeatingTimer> timer;
    std::unique_ptr<RepeatingTimer> positionTimer;
};

} // namespace lumbrine::simulation
