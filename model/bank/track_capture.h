// Keeping what Pro Tools showed last of each track's fader, and whether it is selected, for when the track is no longer
// shown. Pro Tools may send the values of other tracks before it sends their names; so a value counts for a track only
// once it and the names have been still, and while the shown names tell the position.
#pragma once

#include "model/bank/bank_map.h"
#include "model/hands/display_watch.h"
#include "model/state/jobs.h"

#include <array>
#include <optional>

namespace lumbrine {

class TrackCapture {
public:
    static constexpr Duration stillness = seconds(0.15);

    TrackCapture(const Jobs& jobs, ReceiverState& state, const BankMap& bankMap, DisplayWatch& displays);

    // Pro Tools has shown a value of that strip. Main thread, like the next three.
    void faderShown(Strip strip);

    void selectsShown();

    // Pro Tools has shown another name, so that strips may show other tracks. It need not show values that are the
    // same as those of the tracks before.
    void namesShown();

    // A job that moved the banks is over: every shown value counts.
    void allShown();

    // Takes what is there to be taken now, in the middle of a job too. Any thread.
    void captureNow();

private:
    void captureSoon();
    void capture(TimePoint shownUntil);
    void captureFaders(TimePoint shownUntil);
    void captureSelects(TimePoint shownUntil);
    Track* trackOn(std::size_t slot); // null where it is not known that there is one
    bool anyFresh() const;
    bool isSure() const;

    const Jobs& jobs;
    ReceiverState& state;
    const BankMap& bankMap;
    DisplayWatch& displays;
    std::array<std::optional<TimePoint>, stripCount> fresh; // faders, since when; main thread, like the next two
    std::optional<TimePoint> freshSelects;
    bool looking = false;
};

} // namespace lumbrine
