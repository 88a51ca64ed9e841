// The activity log: each line goes to standard output at once and to the visible list on the main thread.
#pragma once

#include "model/state/jobs.h"
#include "model/state/published_state.h"

#include <functional>
#include <string>

namespace lumbrine {

class ActivityLog {
public:
    static constexpr std::size_t visibleLines = 120;

    ActivityLog(const Jobs& modelJobs, PublishedState& publishedState,
                std::function<void(const std::string&)> lineSink);

    // One finished line, without newline or time stamp. Any thread.
    void appendLog(const std::string& line);

    // To standard output only, for diagnostics. Any thread.
    void print(const std::string& line) const { sink(line); }

private:
    void show(const std::string& line);

    const Jobs& jobs;
    PublishedState& published;
    const std::function<void(const std::string&)> sink;
};

} // namespace lumbrine
