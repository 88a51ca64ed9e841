#include "model/state/activity_log.h"

#include "base/utf8.h"

#include <cassert>
#include <utility>

namespace lumbrine {

namespace {

constexpr Duration longest = seconds(60);
constexpr std::size_t mostTold = 100; // lines; more kinds than there are

std::string cleaned(const std::string& line) {
    return std::string(utf8Clamp(onOneLine(line), ActivityLog::maxLine));
}

} // namespace

ActivityLog::ActivityLog(const Jobs& jobs, PublishedState& published, Bilingual language,
                         std::function<void(const std::string&)> sink)
    : text(language), jobs(jobs), published(published), sink(std::move(sink)), toldLock(jobs.runtime) {}

void ActivityLog::appendLog(const std::string& line) {
    std::string clean = cleaned(line);
    sink(clean);
    jobs.runOnMain([this, clean = std::move(clean)] { show(clean); });
}

void ActivityLog::print(const std::string& line) const {
    sink(cleaned(line));
}

void ActivityLog::sayOnceAMinute(std::string_view english, std::string_view japanese) {
    sayUnlessToldWithin(longest, text(english, japanese));
}

void ActivityLog::sayOnceARun(std::string_view english, std::string_view japanese) {
    sayUnlessToldWithin(seconds(10), text(english, japanese));
}

void ActivityLog::sayUnlessToldWithin(Duration pause, const std::string& line) {
    const TimePoint now = jobs.runtime.now();
    {
        const Lock lock(toldLock);
        std::erase_if(told, [now](const auto& entry) { return now - entry.second >= longest; });
        const auto last = told.find(line);
        if (last != told.end() && now - last->second < pause) return;
        if (told.size() >= mostTold) told.clear();
        told[line] = now;
    }
    appendLog(line);
}

void ActivityLog::show(const std::string& line) {
    assert(jobs.runtime.onMain());
    auto& lines = published.logLines;
    lines.push_back(line);
    ++published.linesLogged;
    if (lines.size() > visibleLines)
        lines.erase(lines.begin(), lines.end() - static_cast<std::ptrdiff_t>(visibleLines));
    published.changed();
}

} // namespace lumbrine
