#include "model/state/activity_log.h"

#include <cassert>
#include <utility>

namespace lumbrine {

ActivityLog::ActivityLog(const Jobs& modelJobs, PublishedState& publishedState,
                         std::function<void(const std::string&)> lineSink)
    : jobs(modelJobs), published(publishedState), sink(std::move(lineSink)) {}

void ActivityLog::appendLog(const std::string& line) {
    sink(line);
    jobs.runOnMain([this, line] { show(line); });
}

void ActivityLog::show(const std::string& line) {
    assert(jobs.runtime.onMain());
    auto& lines = published.logLines;
    lines.push_back(line);
    if (lines.size() > visibleLines)
        lines.erase(lines.begin(), lines.end() - static_cast<std::ptrdiff_t>(visibleLines));
    published.changed();
}

} // namespace lumbrine
