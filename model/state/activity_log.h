// The activity log: each line goes to standard output at once and to the visible list on the main thread.
//
// Lines contain texts from outside, such as track names and errors of the scripting service. Whatever they contain, it
// stays one line of at most `maxLine` bytes, without control characters.
#pragma once

#include "base/bilingual.h"
#include "model/state/jobs.h"
#include "model/state/published_state.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace lumbrine {

class ActivityLog {
public:
    static constexpr std::size_t visibleLines = 120;
    static constexpr std::size_t maxLine = 500;

    ActivityLog(const Jobs& jobs, PublishedState& published, Bilingual language,
                std::function<void(const std::string&)> sink);

    // One finished line, without newline or time stamp. Any thread.
    void appendLog(const std::string& line);

    // The line in the user's language. Any thread.
    void say(std::string_view english, std::string_view japanese) { appendLog(text(english, japanese)); }

    // The same, for lines that may come again and again. A line that says how something stands is logged at most once a
    // minute; one that says that something was dropped once in ten seconds, because then it may be about something
    // else. Any thread.
    void sayOnceAMinute(std::string_view english, std::string_view japanese);
    void sayOnceARun(std::string_view english, std::string_view japanese);

    // To standard output only, for diagnostics. Any thread.
    void print(const std::string& line) const;

    const Bilingual text; // for lines that are put together

private:
    void sayUnlessToldWithin(Duration pause, const std::string& line);
    void show(const std::string& line);

    const Jobs& jobs;
    PublishedState& published;
    const std::function<void(const std::string&)> sink;

    Mutex toldLock;
    std::map<std::string, TimePoint> told LUMBRINE_GUARDED_BY(toldLock); // the lines that may come again
};

} // namespace lumbrine
