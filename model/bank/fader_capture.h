// Keeping the last fader value that Pro Tools showed of each track, for when the track is no longer shown. Pro Tools
// may send the faders of other tracks before it sends their names; so a value counts for a track only once it and the
// names have been still, and while the shown names tell the position.
#pragma once

#include "model/bank/bank_map.h"
#include "model/hands/display_watch.h"
#include "model/state/jobs.h"

#include <array>
#include <optional>

namespace lumbrine {

class FaderCapture {
public:
    static constexpr Duration stillness = seconds(0.15);

    FaderCapture(const Jobs& jobs, ReceiverState& state, const BankMap& bankMap, DisplayWatch& displays);

    // Pro Tools has shown a value of that strip. Main thread.
    void faderShown(Strip strip);

    // A job that moved the banks is over: every shown value counts. Main thread.
    void allShown();

    // Takes what is there to be taken now, in the middle of a job too. Any thread.
    void captureNow();

private:
    void captureSoon();
    void capture(TimePoint shownUntil);
    bool isSure() const;

    const Jobs& jobs;
    ReceiverState& state;
    const BankMap& bankMap;
    DisplayWatch& displays;
    std::array<std::optional<TimePoint>, stripCount> fresh; // since when; main thread, like the next
    bool looking = false;
};

} // namespace lumbrine
