#include "model/state/activity_log.h"

#include <cassert>
#include <utility>

namespace lumbrine {

ActivityLog::ActivityLog(const Jobs& jobs, PublishedState& published, Bilingual language,
                         std::function<void(const std::string&)> sink)
    : text(language), jobs(jobs), published(published), sink(std::move(sink)) {}

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
